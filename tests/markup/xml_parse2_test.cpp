#include <skuan/markup/xml_parse2.h>

#include <support/core_application.h>

#include <string>
#include <thread>
#include <vector>

namespace {

/// The consumer: takes what the parser gives, on this thread, until `wanted` things have come.
class Consumer
{
public:
    Consumer()
    {
        engine.config_tag("reply");
        engine.config_tag("report");
        QObject::connect(&engine, &XMLParseEngine2::parse_result_available, &context_, [this] {
            ++announcements;
            for (XMLTree tree; !engine.parse_error() && !(tree = engine.get_xml()).is_null();)
                texts.push_back(tree.flatten(XMLTree::flatten_compact, true).to_string());
            failed = engine.parse_error();
        });
    }

    XMLParseEngine2 engine{65536};
    std::vector<std::string> texts;
    bool failed = false;
    int announcements = 0;

private:
    QObject context_;
};

using XMLParseEngine2Test = support::CoreApplication;

QByteArray report(int number)
{
    return "<report><n>" + QByteArray::number(number) + "</n></report>";
}

TEST_F(XMLParseEngine2Test, AnnouncesABatchOnce)
{
    Consumer consumer;
    consumer.engine.input_bytes(report(1) + report(2) + report(3));
    wait_until([&] { return consumer.texts.size() == 3; });
    EXPECT_EQ(consumer.announcements, 1);
}

TEST_F(XMLParseEngine2Test, AnErrorEndsTheStreamUntilReset)
{
    for (const QByteArray& bad : {QByteArray("<reply><</reply>"), QByteArray(65536, ' ') + 'x',
                                  "<reply>" + QByteArray(65536 - 6, 'x')}) {
        Consumer consumer;
        consumer.engine.input_bytes(report(1) + bad);
        consumer.engine.input_bytes(report(2));
        wait_until([&] { return consumer.failed; });
        EXPECT_EQ(consumer.texts, std::vector<std::string>{report(1).toStdString()});
        EXPECT_TRUE(consumer.engine.get_xml().is_null());

        consumer.engine.reset();
        EXPECT_FALSE(consumer.engine.parse_error());
        consumer.failed = false;
        consumer.engine.input_bytes(report(3));
        wait_until([&] { return consumer.texts.size() == 2; });
        EXPECT_EQ(consumer.texts.back(), report(3).toStdString());
    }
}

TEST_F(XMLParseEngine2Test, NothingCrossesAReset)
{
    Consumer consumer;
    for (int round = 0; round < 300; ++round) {
        for (int i = 0; i < 20; ++i)
            consumer.engine.input_bytes("<report><old>" + QByteArray::number(round) + "</old></report><rep");
        if (round % 3 == 0)
            consumer.engine.input_bytes(QByteArray("<reply><</reply>"));
        consumer.engine.reset();
        consumer.texts.clear();
        consumer.failed = false;
        consumer.engine.input_bytes(report(round));
        wait_until([&] { return !consumer.texts.empty() || consumer.failed; });
        ASSERT_FALSE(consumer.failed);
        ASSERT_EQ(consumer.texts, std::vector<std::string>{report(round).toStdString()});
    }
}

TEST_F(XMLParseEngine2Test, TakesInputFromAnotherThreadAndCanGoAtAnyMoment)
{
    for (int round = 0; round < 50; ++round) {
        auto consumer = std::make_unique<Consumer>();
        std::thread feeder([&] {
            for (int i = 0; i < 100; ++i)
                consumer->engine.input_bytes(report(i));
        });
        if (round % 2 == 0)
            wait_until([&] { return consumer->texts.size() >= 10; });
        feeder.join();
        consumer.reset();
    }
}

} // namespace
