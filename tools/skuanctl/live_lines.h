// A picture made of lines that changes where it stands on the terminal.
#pragma once

#include <skuanctl/output.h>
#include <skuanctl/platform_terminal.h>

#include <QElapsedTimer>
#include <QTimer>

#include <functional>

/// The cursor always rests on the line below, and nothing of the terminal's state is changed: however the
/// program ends or is stopped, the last picture stands above the prompt. Only what differs is written. Lives
/// on the main thread.
class LiveLines
{
public:
    /// The lines, for a terminal of so many columns. Nothing in them moves a cursor. Those that are too
    /// long are cut, and those that find no room left out.
    using Picture = std::function<QStringList(int columns)>;

    LiveLines(Output& output, Picture picture);

    /// Draws what has not been drawn yet.
    ~LiveLines();

    /// It is to be drawn, soon: at most once a field, however many things change.
    void change();

private:
    void draw();
    void look();
    QStringList lines() const;

    Output& output_;
    const Picture picture_;
    QStringList shown_;
    TerminalSize size_{};
    QTimer drawing_;
    QTimer looking_; // whether the terminal is still as it was
    QElapsedTimer looked_;
};
