// The vocabulary of the protocol is a few hundred tags that come again in every message. Each is made
// once, as a string that is never freed, so that a tag in a tree costs neither memory nor a count.
#pragma once

#include <skuan/export.h>
#include <skuan/foundation/astring.h>

namespace skuan {

/// The shared string for the name `bytes`, made on first use. Names of more than 48 bytes, and names
/// that come after the table has taken 1024, give null: the table is bounded, so that a peer which
/// invents names cannot fill memory. The result lives as long as the process.
///
/// Only names by the tag rule, a letter and then letters, digits and '_', may be added; `find_name`
/// looks without adding, so any bytes may be asked for. Any thread; a look-up takes no lock.
SKUAN_EXPORT const AString* find_name(const char* bytes, unsigned n);
SKUAN_EXPORT const AString* add_name(const char* bytes, unsigned n);

/// The string for a tag that the source names, which must be NUL-terminated ASCII.
SKUAN_EXPORT const AString& tag_name(const char* name);

} // namespace skuan
