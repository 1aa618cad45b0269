// Which messages there are, as tables from tag to number.
#pragma once

class EnumString;

namespace KVRP3 {

/// The numbers of the replies and of the reports by tag; they do not overlap, and an unknown tag is -1.
const EnumString& reply_numbers();
const EnumString& report_numbers();

} // namespace KVRP3
