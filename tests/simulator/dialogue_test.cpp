// What the server keeps, answers and reports: plays the dialogues in dialogues/. There, `1> ...` is a command
// of the client 1, and what each client gets because of it follows: replies as `1< ...`, but a lone `ok` at
// the end goes without saying; reports as `1* ...`, and those of channel A as `1* A status ...; speed ...`.
// `1> control ...` is a line of the control language, with its answer as `1= ...`. Time stands still but for
// `1> step N`, which lets N fields pass. With SKUAN_RENEW_DIALOGUES set, what really comes is written over
// what was expected, for a person to read.
#include "plain_client.h"

#include <QDir>
#include <QFile>

#include <map>
#include <sstream>

namespace {

using support::Station;

class Played
{
public:
    /// Plays the commands of a dialogue and writes down what really comes.
    std::string transcript(const std::string& dialogue)
    {
        std::string written;
        std::istringstream lines(dialogue);
        for (std::string line; std::getline(lines, line);) {
            if (line.size() < 4 || line[1] != '>')
                continue;
            written += line + "\n" + play(line[0], QString::fromStdString(line.substr(3)));
            for (auto& [name, client] : clients_) // whatever the command makes others hear is on its way
                if (name != line[0])
                    written += told(name, client->hear());
        }
        return written;
    }

private:
    std::string play(char name, const QString& command)
    {
        if (command == "leave") {
            clients_.erase(name);
            EXPECT_TRUE(wait_until([&] { return station_->counters().connected == clients_.size(); }));
            return {};
        }
        auto& client = clients_[name];
        if (!client)
            client = std::make_unique<PlainClient>(station_);
        if (command.startsWith("step ")) {
            station_->step(command.mid(5).toULongLong());
            return told(name, client->hear());
        }
        if (command.startsWith("control ")) {
            QString error;
            const QString answer = station_->control(command.mid(8), &error);
            std::string written;
            for (const QString& line : (answer + error).split('\n', Qt::SkipEmptyParts))
                written += std::string(1, name) + "= " + line.toStdString() + "\n";
            return written + told(name, client->hear());
        }
        const std::string answer = told(name, client->hear(cmd("x", compact::to_command(command))));
        const std::string reply{name, '<'}, ok = reply + " ok\n";
        const auto first = answer.find(reply);
        if (first == std::string::npos)
            return answer + reply + " nothing\n";
        return first + ok.size() == answer.size() ? answer.substr(0, first) : answer;
    }

    static std::string told(char name, const QByteArray& heard)
    {
        static const QRegularExpression of_channel(QStringLiteral("^\\* channel_(\\w+) Channel=(\\w)(.*)$"));
        constexpr int readable = 110;
        QStringList lines;
        for (QString line :
             QString::fromStdString(compact::from_stream(heard)).split('\n', Qt::SkipEmptyParts)) {
            const auto match = of_channel.match(line);
            if (match.hasMatch()) {
                const QString start = "* " + match.captured(2) + " ",
                              report = match.captured(1) + match.captured(3);
                if (!lines.isEmpty() && lines.last().startsWith(start) &&
                    lines.last().size() + report.size() < readable) {
                    lines.last() += "; " + report;
                    continue;
                }
                line = start + report;
            }
            lines += line;
        }
        std::string written;
        for (const QString& line : lines)
            written += name + line.toStdString() + "\n";
        return written;
    }

    static simulator::Settings settings()
    {
        QString error;
        simulator::Settings settings;
        settings.pace = 0;
        settings.clips = simulator::ClipStore::from_text("ident\nnews/a\nnews/b\n", &error);
        return settings;
    }

    const Station station_{settings()};
    std::map<char, std::unique_ptr<PlainClient>> clients_;
};

using DialogueTest = SimulatorTest;

TEST_F(DialogueTest, EachGoesAsItIsWritten)
{
    const QDir folder(QStringLiteral(DIALOGUES_FOLDER));
    const QStringList names = folder.entryList({QStringLiteral("*.txt")});
    ASSERT_FALSE(names.isEmpty());
    for (const QString& name : names) {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const std::string written = file.readAll().toStdString();
        const std::string played = Played().transcript(written);
        file.close();
        if (qEnvironmentVariableIsSet("SKUAN_RENEW_DIALOGUES") && file.open(QIODevice::WriteOnly))
            file.write(played.data(), static_cast<qint64>(played.size()));
        EXPECT_EQ(played, written) << qPrintable(name);
    }
}

} // namespace
