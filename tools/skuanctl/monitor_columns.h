// What can be followed of a channel, a column each.
#pragma once

#include <QJsonValue>
#include <QObject>
#include <QString>

#include <functional>
#include <vector>

class Spark;

/// Where a column has its values from, and where they go.
struct ColumnFeed
{
    Spark& session;
    unsigned channel;                            ///< from 0
    QObject* receiver;                           ///< with it, the feed ends
    std::function<void(const QJsonValue&)> take; ///< null for what is not known
};

struct MonitorColumn
{
    const char* name; ///< also its key in JSON
    int width;        ///< on a terminal; 0: what room there is
    Qt::Alignment alignment;
    bool by_default; ///< shown if no columns are asked for

    /// Takes the value that is there now, and from then on each that comes. The server is asked for nothing
    /// but what this column needs.
    void (*follow)(const ColumnFeed& feed);
};

const std::vector<MonitorColumn>& monitor_columns();
