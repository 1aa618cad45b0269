// What API does whatever commands there are.
#include <skuan/protocol/kvrp3_api.h>

#include <skuan/protocol/pending_table_p.h>

namespace KVRP3 {

API::API() : pending_(std::make_unique<PendingTable>()) {}
API::~API() = default;

void API::fail_all_pending_commands()
{
    pending_->fail_all();
}

bool API::forget_transaction(const AString& xid)
{
    return pending_->forget(xid);
}

unsigned API::outstanding_commands() const
{
    return pending_->size();
}

} // namespace KVRP3
