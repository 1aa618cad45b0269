// What the program writes: results to standard output, for people or as JSON, and errors to standard
// error in the same form.
#pragma once

#include <skuanctl/failure.h>

#include <QElapsedTimer>
#include <QJsonObject>
#include <QObject>
#include <QStringList>
#include <QTimer>

/// Lives on the main thread. Lines are gathered while events are at hand and written when the program
/// is about to wait, so that a reader sees a report at once and a long listing costs few writes.
class Output : public QObject
{
    Q_OBJECT
public:
    explicit Output(bool json);
    ~Output() override;

    /// A line of the result, for people.
    void text(const QString& text);

    /// A line of the result, for programs.
    void object(const QJsonObject& object);

    /// A remark for who sits at a terminal; nobody else gets it.
    void remark(const QString& text);

    /// On standard error, for who sits at a terminal and sees nothing else come; now and then, and gone at
    /// the end. Costs little if nobody is there.
    void progress(const QString& text);

    /// Whether results go to a terminal on which `draw` can move the cursor.
    bool can_draw() const;

    /// Text and escape sequences, as they are.
    void draw(const QByteArray& bytes) { write(bytes); }

    /// `host`, if there are several, is told with it.
    void error(const Failure& failure, const QString& host = {});

    /// False if not all that was written so far has gone out.
    bool flush();

Q_SIGNALS:
    /// Nothing more can be written: the reader has closed, or the disk is full. Comes once, and the
    /// text is empty where the reader closed, as one does that has seen enough.
    void broken(const QString& why);

private:
    void write(const QByteArray& bytes);
    void check(bool written);
    void end_progress();

    const bool json_;
    const bool to_terminal_;
    bool shows_progress_;
    bool in_progress_ = false;
    QElapsedTimer progress_shown_;
    bool broken_ = false;
    QTimer flush_timer_;
};

/// The text with everything in it that would move a cursor made visible: \n, \t, \u{1b}; a backslash is
/// doubled, so that the form can be read back.
QString made_visible(const QString& text);
