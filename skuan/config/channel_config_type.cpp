// The texts are those of the catalogue.
#include <skuan/config/channel_config_type.h>

#include <skuan/config/channel_catalogue_p.h>
#include <skuan/foundation/enum_string.h>

#include <iterator>

namespace ChannelCF {

static const EnumString& config_types()
{
    static const EnumString table = [] {
        EnumString::ByLatin1 rows[ConfigType_count];
        for (const SorrelRow& row : sorrel_rows)
            rows[row.type] = {static_cast<int>(row.type), row.name};
        return EnumString(rows, ConfigType_count);
    }();
    return table;
}

static const EnumString& board_types()
{
    static constexpr EnumString::ByLatin1 rows[] = {
        {BoardType_invalid, "invalid"}, {BoardType_sorrel, "sorrel"}, {BoardType_tansy1, "tansy1"},
        {BoardType_tansy2, "tansy2"},   {BoardType_tansy3, "tansy3"},
    };
    static const EnumString table(rows, std::size(rows), BoardType_invalid, AString("????"));
    return table;
}

ConfigType string_to_ConfigType(const AString& text)
{
    return static_cast<ConfigType>(config_types().to_enumval(text));
}

AString ConfigType_to_string(ConfigType type)
{
    return config_types().to_name(static_cast<int>(type));
}

BoardType string_to_BoardType(const AString& text)
{
    return static_cast<BoardType>(board_types().to_enumval(text));
}

AString BoardType_to_string(BoardType type)
{
    return board_types().to_name(static_cast<int>(type));
}

} // namespace ChannelCF
