// The video standard that a server is set to, followed as it changes.
#pragma once

#include <skuan/export.h>
#include <skuan/time/time_meta_types.h>
#include <skuan/time/video_standard.h>

#include <QList>
#include <QObject>
#include <QPointer>

class CFItemModel;
class CFModel;

/// Reads and edits the item "VideoStandard" of the configuration. Edits count as if the server had them.
///
/// Lives on the thread of the mirror. Without it, or after its end, there is no standard and none is allowed.
class SKUAN_EXPORT VideoStandardModel : public QObject
{
    Q_OBJECT

public:
    /// On the mirror of a session; a null one is reported.
    explicit VideoStandardModel(CFModel* model, QObject* parent = nullptr);
    /// On the process-wide mirror of the server on this machine.
    explicit VideoStandardModel(QObject* parent = nullptr);

    // 0 for a text that is no standard here, and before the server has said anything.

    Vantor::VideoStandard get() const;
    Vantor::VideoFrequency get_frequency() const;
    Vantor::VideoResolution get_resolution() const;

    /// The server has said what it has.
    bool have_cf() const;

    /// Those that the server allows, in its order, without the ones that are no standard here.
    QList<Vantor::VideoStandard> allowed_values() const;
    bool allowed(Vantor::VideoStandard standard) const;
    // By any standard with this rate or raster, or with both.
    bool allowed(Vantor::VideoFrequency frequency) const;
    bool allowed(Vantor::VideoResolution resolution) const;
    bool allowed(Vantor::VideoFrequency frequency, Vantor::VideoResolution resolution) const;

public Q_SLOTS:
    /// Edits the item as the server writes it, "1080_50i". Nothing happens for an invalid value.
    void set(Vantor::VideoStandard standard);
    /// Edits the item with the number of the standard, in digits: 6 for 1080i and 50 Hz, and 0 for what is no
    /// standard. Meant so, other than above; programs have come to rely on it.
    void set(Vantor::VideoFrequency frequency, Vantor::VideoResolution resolution);

Q_SIGNALS:
    // In this order after each change of the item, also to what is no standard here. If a slot changes it
    // again, what is still to come has the newest value.

    void changed(Vantor::VideoStandard standard);
    void changed(Vantor::VideoFrequency frequency, Vantor::VideoResolution resolution);
    void changed(Vantor::VideoFrequency frequency);
    void changed(Vantor::VideoResolution resolution);

private Q_SLOTS:
    void model_changed();

private:
    void follow(CFItemModel* item);

    QPointer<CFItemModel> item_; ///< its model's
};
