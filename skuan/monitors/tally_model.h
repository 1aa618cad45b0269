// The tally light of a channel, as whoever switches it writes it into the user dictionary.
#pragma once

#include <skuan/export.h>

#include <QObject>

class USItemModel;
class USModel;

/// Looks at the key "Tally" with the number of the channel behind it. Belongs to whoever makes it, lives on
/// the thread of the dictionary, and may not outlive that.
class SKUAN_EXPORT TallyModel : public QObject
{
    Q_OBJECT

public:
    /// By the word under the key, which is spelled as here: "offline", "yellow"...
    enum TallyState {
        tally_none = 0, ///< any other word, or none
        tally_offline = 1,
        tally_yellow = 2,
        tally_red = 3,
        tally_green = 4,
    };

    /// A null dictionary is reported, and leaves the tally at none.
    TallyModel(USModel* dictionary, unsigned channel, QObject* parent = nullptr);

    TallyState get_state() const { return state_; }

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void update();

private:
    USItemModel* item_ = nullptr; ///< the dictionary's
    TallyState state_ = tally_none;
};
