// What a simulated server is: where it listens, who it says it is, what it has, what it bears.
#pragma once

#include <simulator/clip_store.h>
#include <simulator/faults.h>
#include <simulator/start_step.h>

#include <QByteArray>
#include <QHostAddress>
#include <QString>

#include <vector>

namespace simulator {

/// Values for a Server; every field has a default that makes sense.
struct Settings
{
    QHostAddress address{QHostAddress::LocalHost}; ///< a test takes its own 127.x.y.z
    quint16 port = 8913;                           ///< the protocol's; 0 lets the system choose

    QString computer_name = QStringLiteral("STUDIO-1"); ///< answers `get_computer_name`
    QString version = QStringLiteral("4.12.0");         ///< answers `get_version_info`, `SVNVersion`
    QString version_path = QStringLiteral("trunk");     ///< `SVNPath`
    ClipStore clips = ClipStore::news();
    int channels = 12; ///< that it has, from A on; 1 to 12

    /// How fast the server's time goes: 60 is a minute a second. At 0 it stands still but for Server::step().
    double pace = 1;

    /// Where it keeps what it has. What is saved there is read when the server is made, if the file is there.
    /// Empty: nowhere.
    QString state_file{};

    /// What it has at first, in the form of a state file (docs/simulator.md); for where there is no such file
    /// yet.
    QByteArray seed{};

    /// What its start goes through, before the control port opens. None: the start is done at once.
    std::vector<StartStep> start_script{};
    quint16 start_status_port = 4272; ///< where the start tells how far it is; 0: nowhere

    /// A folder that is there already, for the files that exports make: a few lines of text each. Empty: none
    /// are made.
    QString export_folder{};

    Faults faults; ///< of every client, from its first byte

    qint64 max_message = 1024 * 1024;              ///< bytes; a client that sends a longer one is closed
    qint64 max_backlog = qint64(64) * 1024 * 1024; ///< bytes waiting for one client; more, and it is dropped

    /// Bytes waiting for all clients together; the one for whom more would wait is dropped.
    qint64 max_total_backlog = qint64(512) * 1024 * 1024;

    /// Roughly the bytes that commands may store in all, for good or for as long as their client is there,
    /// beside the clips of the start; what would need more is refused.
    qint64 max_state = qint64(256) * 1024 * 1024;
};

} // namespace simulator
