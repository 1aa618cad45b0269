// The mirror against a server: what it asks for and when, and that in the end it shows what is there.
#include <skuan/config/cf_control_panel.h>
#include <skuan/config/cf_model.h>
#include <skuan/config/cf_rate.h>
#include <skuan/protocol/kvrp3_api_qt.h>

#include <support/core_application.h>
#include <support/on_threads.h>
#include <support/station.h>
#include <support/touch_sockets.h>

#include <mutex>

namespace {

const simulator::Faults holding{.hold = true};

class CFModel : public support::CoreApplication
{
    std::mutex mutex_; // of the next one; both before the server, which fills it on its thread
    QStringList commands_;

protected:
    support::Station station{simulator::Settings{.pace = 0, .faults = {}}};
    KVRP3::APIQt api, other; // other: a second program
    ::CFModel* const model = ::CFModel::create(false, &api);
    int scans = 0;

    CFModel()
    {
        QObject::connect(station.operator->(), &simulator::Server::command, station.operator->(),
                         [this](quint64, const simulator::Element& message) { write_down(message); });
        QObject::connect(model, &::CFModel::fully_scanned, [this] { ++scans; });
        support::keep_touching_sockets(api);
        support::keep_touching_sockets(other);
    }

    void connect()
    {
        api.connect_to_server(station.address());
        other.connect_to_server(station.address());
        wait_until([this] { return api.is_connected() && other.is_connected(); });
    }
    void wait_for_scan(int number)
    {
        wait_until([&] { return scans == number; });
        EXPECT_TRUE(model->is_fully_scanned());
    }
    void change_elsewhere(const char* name, const char* value)
    {
        other.cmd_set_configuration(AString::l1(name), AString::l1(value));
    }
    /// The next `count` configuration commands that the server gets: "?name" or "name=value".
    QStringList taken(int count)
    {
        wait_until([&] {
            const std::lock_guard lock(mutex_);
            return commands_.size() >= count;
        });
        settle(); // for one too many
        const std::lock_guard lock(mutex_);
        return std::exchange(commands_, {});
    }

private:
    void write_down(const simulator::Element& message)
    {
        const std::lock_guard lock(mutex_);
        const QLatin1String name("ConfigurationItemName"), value("ConfigurationItemValue");
        if (const auto* get = message.child(QLatin1String("get_one_configuration")))
            commands_ += '?' + get->child_text(name);
        if (const auto* set = message.child(QLatin1String("set_configuration")))
            commands_ += set->child_text(name) + '=' + set->child_text(value);
    }
};

TEST_F(CFModel, fetches_each_item_once_and_six_at_a_time)
{
    const char* names[] = {"FanSpeed", "FanSpeed",  "LogLevel",    "StopMode",  "AutoEE",
                           "NoSuch",   "GPIEnable", "AspectRatio", "FreezeMode"};
    for (const char* name : names)
        EXPECT_EQ(model->get_item(name), model->get_item(name));
    station->set_faults(holding);
    connect();
    EXPECT_EQ(taken(6), (QStringList{"?AspectRatio", "?AutoEE", "?FanSpeed", "?FreezeMode", "?GPIEnable",
                                     "?LogLevel"}));
    EXPECT_FALSE(model->is_fully_scanned());
    station->set_faults({});
    wait_for_scan(1);
    EXPECT_EQ(taken(2), (QStringList{"?NoSuch", "?StopMode"}));
    EXPECT_EQ(model->get_item("FanSpeed")->get(), "auto");
    EXPECT_FALSE(model->get_item("NoSuch")->have_cf());

    model->get_item("PanelLanguage");
    EXPECT_FALSE(model->is_fully_scanned());
    wait_for_scan(2);
    EXPECT_EQ(taken(1), QStringList{"?PanelLanguage"});

    // What has no fetch in flight gets no answer.
    EXPECT_TRUE(QMetaObject::invokeMethod(model, "get_one_error", Q_ARG(unsigned, 2)));
    EXPECT_TRUE(QMetaObject::invokeMethod(model, "get_one_error", Q_ARG(unsigned, 99)));
    settle();
    EXPECT_EQ(scans, 2);
}

TEST_F(CFModel, sends_edits_when_told_or_at_once_and_keeps_those_refused)
{
    CFItemModel* const fan = model->get_item("FanSpeed");
    CFItemModel* const log = model->get_item("LogLevel");
    CFItemModel* const ntp = model->get_item("NTPServer"); // takes effect at a restart
    connect();
    wait_for_scan(1);
    taken(3);

    int changes = 0;
    QObject::connect(model, &::CFModel::changed, [&] { ++changes; });
    EXPECT_FALSE(model->have_changes() || model->need_reboot());
    EXPECT_TRUE(model->commit_done());
    fan->set("full");
    log->set("debug");
    ntp->set("ntp.studio");
    EXPECT_EQ(changes, 3);
    EXPECT_TRUE(model->have_changes() && model->need_reboot() && !model->commit_done());
    model->commit({"NTPServer", "Unknown", "LogLevel"});
    wait_until([&] { return !log->have_changes() && !ntp->have_changes(); });
    EXPECT_EQ(taken(2), (QStringList{"NTPServer=ntp.studio", "LogLevel=debug"}));
    EXPECT_TRUE(fan->have_changes() && !model->need_reboot());
    model->revert({"FanSpeed", "Unknown"});
    EXPECT_EQ(fan->get(), "auto");
    EXPECT_TRUE(model->commit_done());

    fan->setHot(true);
    fan->set("quiet");
    log->set("warning"); // not hot: stays here
    wait_until([&] { return !fan->have_changes(); });
    EXPECT_EQ(taken(1), QStringList{"FanSpeed=quiet"});
    model->commit_changes();
    wait_until([&] { return !model->have_changes(); });
    EXPECT_EQ(taken(1), QStringList{"LogLevel=warning"});

    fan->set("hurricane");
    EXPECT_EQ(taken(1), QStringList{"FanSpeed=hurricane"});
    change_elsewhere("FanSpeed", "auto"); // the server says something else: sent again
    EXPECT_EQ(taken(3), (QStringList{"FanSpeed=auto", "FanSpeed=hurricane", "FanSpeed=hurricane"}));
    model->revert_all_items();
    EXPECT_EQ(fan->get(), "auto");
}

// The line goes with six fetches in flight and edits waiting; meanwhile another program changes things.
TEST_F(CFModel, scans_afresh_after_a_lost_connection_and_keeps_edits)
{
    CFItemModel* const fan = model->get_item("FanSpeed");
    connect();
    wait_for_scan(1);
    fan->set("full");
    for (int i = 0; i != 12; ++i)
        model->get_item(QStringLiteral("Channel_GrowingMxfExportPath%1").arg(i));
    station->set_faults(holding);
    taken(7);
    EXPECT_EQ(api.outstanding_commands(), 6u);
    station->drop_clients();
    wait_until([&] { return !api.is_connected() && !other.is_connected(); });
    EXPECT_EQ(api.outstanding_commands(), 0u);
    model->commit_changes(); // goes nowhere
    model->commit({"FanSpeed"});
    settle();
    EXPECT_FALSE(model->is_fully_scanned());
    station->set_faults({});

    other.connect_to_server(station.address());
    wait_until([&] { return other.is_connected(); });
    change_elsewhere("Channel_GrowingMxfExportPath7", "/export/7");
    taken(1);
    connect();
    wait_for_scan(2);
    EXPECT_EQ(taken(13).filter("?").size(), 13);
    EXPECT_EQ(model->get_item("Channel_GrowingMxfExportPath7")->get(), "/export/7");
    EXPECT_EQ(fan->get(), "full");
    model->commit_changes();
    wait_until([&] { return model->commit_done(); });
    // The registration was made again; a report brings items that nobody has asked for.
    change_elsewhere("LogLevel", "error");
    wait_for_scan(3);
    EXPECT_EQ(model->get_item("LogLevel")->get(), "error");
}

// Slots that ask the model run while an item is locked, and others walk over all items at the same time.
TEST_F(CFModel, is_asked_and_edited_on_all_threads_while_it_scans)
{
    connect();
    std::atomic<unsigned> asked{0}, done{0};
    const auto ask = [&] { asked += 1 + (model->have_changes() && model->is_fully_scanned()); };
    for (int i = 0; i != 4; ++i)
        QObject::connect(model->get_item(QStringLiteral("ControlPanel_ID%1").arg(i)),
                         QOverload<QString>::of(&CFItemModel::changed), ask);
    std::thread threads([&] {
        support::on_threads(4, [&](unsigned thread) {
            for (unsigned i = 0; i != 48; ++i) {
                model->get_item(QStringLiteral("ControlPanel_ID%1").arg((i + thread) % 4))->set(i);
                model->get_item(QStringLiteral("ControlPanel_Channels%1").arg(i % 4))->set(i);
                model->cache_clear();
                model->have_changes();
                model->need_reboot();
                model->commit_done();
            }
            ++done;
        });
    });
    wait_until([&] { return done == 4 && model->is_fully_scanned(); });
    threads.join();
    settle();
    EXPECT_GT(asked, 0u);
    EXPECT_EQ(model->findChildren<CFItemModel*>().size(), 8);
    EXPECT_TRUE(model->have_changes());
    model->commit_changes();
    wait_until([&] { return model->commit_done(); });
    EXPECT_FALSE(model->have_changes());
    std::thread([&] {
        model->get_item("ControlPanel_ID0")->set("mine");
        EXPECT_TRUE(model->have_changes()); // at once
    }).join();
}

TEST_F(CFModel, is_one_for_this_machine_however_many_ask_first)
{
    std::array<::CFModel*, 8> seen{};
    support::on_threads(8, [&](unsigned i) { seen[i] = ::CFModel::localhost(); });
    EXPECT_EQ(std::count(seen.begin(), seen.end(), seen[0]), 8);
    EXPECT_EQ(::CFModel::create(true, &api)->parent(), nullptr); // it lives where the first asked
    delete seen[0];

    CFItemModel* const item = ::CFModel::get_item_localhost("FanSpeed");
    connect();
    ::CFModel* const local = ::CFModel::create(true, &api); // connected already
    EXPECT_EQ(local->parent(), &api);
    EXPECT_EQ(::CFModel::create(true, &other), local);
    EXPECT_EQ(local->parent(), &api);
    wait_until([&] { return local->is_fully_scanned(); });
    EXPECT_EQ(item->get(), "auto");
    delete local;
    const std::unique_ptr<::CFModel> unbound(::CFModel::create(true, nullptr)); // of no use, and no harm
    EXPECT_FALSE(unbound->parent() || unbound->is_fully_scanned());
}

TEST_F(CFModel, tells_which_control_panels_there_are)
{
    const CFControlPanel early(model);
    EXPECT_TRUE(early.empty());
    connect();
    wait_for_scan(1);
    const CFControlPanel late(model); // finds everything known
    for (const CFControlPanel* panels : {&early, &late}) {
        int told = 0;
        const QObject listener;
        QObject::connect(panels, &CFControlPanel::count_changed, &listener, [&] { ++told; });
        model->revert_all_items();
        EXPECT_EQ(told, 1);
        EXPECT_EQ(panels->size(), 2u);
        EXPECT_EQ(panels->get_kbd_id(1), "panel-1");
        EXPECT_EQ(panels->get_channels(1), (QSet<unsigned>{0, 1, 2, 3}));
        EXPECT_TRUE(panels->get_channels(2).isEmpty() && panels->get_kbd_id(4000000000u).isEmpty());
        model->get_item("ControlPanelCount")->set("9");
        model->get_item("ControlPanel_Channels3")->set("ZbA A");
        EXPECT_EQ(panels->size(), 4u);
        EXPECT_EQ(panels->get_channels(3), (QSet<unsigned>{0, 25}));
        model->get_item("ControlPanel_Channels3")->set("");
        model->get_item("ControlPanel_ID2")->set("");
        model->get_item("ControlPanel_Channels2")->set("A");
        EXPECT_FALSE(panels->exists(3) || panels->exists(2));
        model->get_item("ControlPanelCount")->set("-1");
        EXPECT_TRUE(panels->empty());
    }
}

TEST(CFRate, scales_and_clamps)
{
    EXPECT_EQ(CFRate::hd60_rate(5), 60u);
    EXPECT_EQ(CFRate::hd50_rate(0), 20u);
    EXPECT_EQ(CFRate::hd48_rate(19), 160u);
    EXPECT_EQ(CFRate::sd50_rate(0), 15u);
    EXPECT_EQ(CFRate::sd60_rate(20), 140u);
    EXPECT_EQ(CFRate::hd50_rate(~0u), 165u);
}

} // namespace
