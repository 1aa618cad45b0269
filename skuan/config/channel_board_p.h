// The kinds of boards.
#pragma once

#include <skuan/config/channel_board.h>
#include <skuan/config/channel_layout_p.h>

#include <map>
#include <memory>
#include <span>
#include <utility>

namespace ChannelCF {

/// Answers from a map of configurations; how `values` lead to one of them is each kind's own.
class BoardConfigs : public BoardConfigInfo
{
public:
    unsigned get_angle_count(const Values& values, unsigned user_channel) const final;
    unsigned get_angle_primary_output(const Values& values, unsigned user_channel,
                                      unsigned angle) const final;
    std::vector<unsigned> PrimaryAngleOutputs(const Values& values, unsigned user_channel,
                                              bool key) const final;
    std::vector<unsigned> AllOutputs(const Values& values, unsigned user_channel, bool key) const final;

protected:
    /// A user channel, and the number that its first output has on the board.
    struct Place
    {
        const UserChannel& user_channel;
        unsigned offset;
    };
    /// Where there is no such user channel: a gap.
    virtual Place place(const Values& values, unsigned user_channel) const = 0;
    /// User channel `index` of `config`, or a gap; `config` may be null.
    static const UserChannel& channel_of(const Config* config, unsigned index);

    void add(ConfigType type, std::unique_ptr<const Config> config); ///< null: nothing is added
    const Config* config(ConfigType type) const;                     ///< null without one
    AOption<OutputSource> source(unsigned output, ConfigType type) const;

private:
    void add_sources(ConfigType type, const std::vector<unsigned>& outputs, unsigned user_channel, bool key);

    std::map<ConfigType, std::unique_ptr<const Config>> configs_;
    std::map<std::pair<unsigned, ConfigType>, OutputSource> output_source_;
};

/// Three sets of four channels with a value for each; a wider configuration reaches over the sets behind its
/// own, whose values then say nothing.
class SorrelConfigInfo : public BoardConfigs
{
public:
    SorrelConfigInfo();

    bool is4K(const Values& values, unsigned user_channel) const override;
    AOption<OutputSource> GetOutputSource(const Values& values, unsigned output) const override;
    unsigned channel_count(const Values& values) const override;

protected:
    Place place(const Values& values, unsigned user_channel) const override;

private:
    struct Reach
    {
        const ConfigSorrel* config = nullptr;
        unsigned offset = 0; ///< of the first channel that it reaches over
    };
    const ConfigSorrel* sorrel_config(ConfigType type) const;
    Reach reach(const Values& values, unsigned channel) const;
};

/// One value counts, the first. 4K is not for these boards.
class TansyConfigInfo : public BoardConfigs
{
public:
    TansyConfigInfo(unsigned channels, std::span<const TansyRow> rows);

    bool is4K(const Values& values, unsigned user_channel) const override;
    AOption<OutputSource> GetOutputSource(const Values& values, unsigned output) const override;
    unsigned channel_count(const Values& values) const override;

protected:
    Place place(const Values& values, unsigned user_channel) const override;

private:
    unsigned channel_count_;
};

class TansyConfigInfo1 : public TansyConfigInfo
{
public:
    TansyConfigInfo1() : TansyConfigInfo(1, tansy1_rows) {}
};

class TansyConfigInfo2 : public TansyConfigInfo
{
public:
    TansyConfigInfo2() : TansyConfigInfo(2, tansy2_rows) {}
};

class TansyConfigInfo3 : public TansyConfigInfo
{
public:
    TansyConfigInfo3() : TansyConfigInfo(3, tansy3_rows) {}
};

} // namespace ChannelCF
