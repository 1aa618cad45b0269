// Arguments as a person writes them, Tag=value, made into the element of a command. `call --help` shows
// every form there is.
#pragma once

#include <skuanctl/catalogue.h>

#include <skuan/markup/xml_tree.h>

#include <optional>

/// One word of the command line.
struct Argument
{
    struct Step
    {
        QString tag;
        std::optional<int> number; ///< which member of a container
    };
    std::vector<Step> path;
    std::optional<QString> value; ///< what stands behind the first =
};

/// Takes any text; a path that makes no sense finds no tag.
Argument parse_argument(const QString& word);

/// The tag at the end of the path; null if there is none.
const Tag* follow(const Parts& parts, const std::vector<Argument::Step>& path);

struct BuiltCommand
{
    XMLTree element;
    QString error; ///< what is wrong with the words; empty if nothing is
};

/// In the order of the wire, whatever the order of the words. Names, values and what must be there are
/// checked.
BuiltCommand build_command(const Command& command, const QStringList& words);
