// How a server's channels are configured, followed as it changes.
#pragma once

#include <skuan/config/channel_config.h>
#include <skuan/config/configured_board.h>
#include <skuan/export.h>

#include <QObject>
#include <QPointer>

#include <array>
#include <vector>

class CFItemModel;
class CFModel;
class USItemModel;
class USModel;

/// Asks the mirrors for three items of the configuration ("ChannelConfigurationSet0" to 2, one for each set
/// of four channels) and for "cf.herbae.0.channel_count" of the dictionary, which tells the kind of board.
/// Edits count as if the server had them.
///
/// Lives on the thread of the mirrors, all of it. Without them, or after their end, nothing is configured.
class SKUAN_EXPORT CFChannelConfig : public QObject
{
    Q_OBJECT

public:
    static constexpr unsigned set_count = 3;

    /// On the mirrors of a session; a null one is reported.
    CFChannelConfig(CFModel* cf_model, USModel* us_model, QObject* parent = nullptr);
    /// On the process-wide mirrors of the server on this machine.
    explicit CFChannelConfig(QObject* parent = nullptr);
    ~CFChannelConfig() override;

    /// Invalid as long as the dictionary tells no number of channels. It tells it of the Tansy kinds only.
    ChannelCF::BoardType board_type() const;
    ChannelCF::ChannelConfigSpec spec() const;

    // The same as of `spec()`.

    unsigned get_angle_count(unsigned user_channel) const;
    std::vector<unsigned> AllOutputs(unsigned user_channel, bool key) const;
    std::vector<unsigned> PrimaryAngleOutputs(unsigned user_channel, bool key) const;
    bool is4K(unsigned user_channel) const;
    AOption<ChannelCF::OutputSource> GetOutputSource(unsigned output) const;
    unsigned channel_count() const; ///< but 0 until the server has said what each set is

    /// Whether it has any video output.
    bool isUserChannel(unsigned user_channel) const;
    /// Those from 0 to 11, in rising order.
    std::vector<unsigned> AllUserChannels() const;

    /// Of set 0, 1 or 2; unknown, with a report, for any other. A set is absent whatever its text if at most
    /// two texts are allowed for it and neither names a present configuration: none at all, too.
    ChannelConfig get(unsigned set) const;
    /// Whether pictures of the configuration are stereo pairs.
    static bool is3D(ChannelConfig config);
    /// How many stereo pairs are recorded together; 1 if it is not 3D.
    static unsigned track_count_3D(ChannelConfig config);
    bool have_3D() const; ///< in any set

    /// ChannelCF::find_key with the texts of the three sets.
    int find_key(unsigned output) const;

Q_SIGNALS:
    void changed(); ///< one of the four items did; not every time does an answer differ

private:
    QString text(unsigned set) const;

    std::array<QPointer<CFItemModel>, set_count> sets_;
    QPointer<USItemModel> board_channels_;
};
