// Classes of reports as a person names them, and the commands that turn them on.
//
//   clip_change          a class that concerns no single channel
//   A:status             a class of a channel; A,B:timecode,speed several; * stands for all
//   metadata:DATABASE    changes of a metadata database
//   userdict:KEY         changes of a key of the user dictionary
#pragma once

#include <skuanctl/catalogue.h>

#include <skuan/markup/xml_tree.h>

struct Registration
{
    std::vector<XMLTree> commands;
    QString error; ///< which word names no class, and why; empty if all do
};

/// Without words: every class, and of every channel.
Registration registration_of(const QStringList& words);
