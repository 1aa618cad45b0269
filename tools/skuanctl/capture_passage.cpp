// Passing on, no faster than the slower side takes it.
#include <skuanctl/capture_passage.h>
#include <skuanctl/platform_socket.h>

namespace {
constexpr qint64 most_unsent = 4 * Wire::most_read; ///< bytes kept for a side that is slow to take them
}

Passage::Passage(qintptr client, const QHostAddress& listener, const QString& host,
                 std::chrono::milliseconds limit, Note note)
    : note_(std::move(note)), client_socket_(client), dial_(host, limit)
{
    connect(&dial_, &Dial::connected, this, [this, listener](qintptr server) {
        if (!dial_.leads_back_to(listener))
            return join(server);
        close_socket(server);
        Q_EMIT circular();
    });
    connect(&dial_, &Dial::failed, this, [this](const QString& why) {
        note_(Side::server, Record::refused, {});
        Q_EMIT refused(why);
        Q_EMIT over();
    });
}

Passage::~Passage()
{
    if (!client_)
        close_socket(client_socket_);
}

void Passage::join(qintptr server)
{
    client_ = std::make_unique<Wire>(client_socket_);
    server_ = std::make_unique<Wire>(server);
    note_(Side::client, Record::opened, {});
    pass_from(Side::client);
    pass_from(Side::server);
}

void Passage::pass_from(Side side)
{
    Wire* const from = &wire(side);
    Wire* const to = &wire(facing(side));
    connect(from, &Wire::received, this, [this, side, to](const QByteArray& bytes) {
        note_(side, Record::said, bytes);
        to->send(bytes);
        hold_back(side);
    });
    connect(to, &Wire::sent, this, [this, side] {
        hold_back(side);
        end_if_over();
    });
    connect(from, &Wire::ended, this, [this, side, to] {
        note_(side, Record::ended, {});
        ++ends_;
        to->end();
        end_if_over();
    });
    connect(from, &Wire::lost, this, [this, side, to] {
        if (ends_ < 2 && !is_lost_)
            note_(side, Record::lost, {});
        is_lost_ = true;
        to->set_reading(false); // there is nobody to pass it on to
        to->end();
        end_if_over();
    });
}

void Passage::hold_back(Side side)
{
    wire(side).set_reading(!is_lost_ && wire(facing(side)).unsent() < most_unsent);
}

void Passage::end_if_over()
{
    if ((ends_ < 2 && !is_lost_) || client_->unsent() > 0 || server_->unsent() > 0)
        return;
    client_->disconnect(this);
    server_->disconnect(this);
    Q_EMIT over();
}
