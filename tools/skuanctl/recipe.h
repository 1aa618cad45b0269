// Verbs that stand for a command of the protocol: from their words to the command, and from its replies to
// lines.
#pragma once

#include <skuanctl/dialogue.h>
#include <skuanctl/options.h>

struct Recipe
{
    std::vector<XMLTree> commands; ///< one, or one for each of the words where a verb takes any number
    QString error;                 ///< what is wrong with the words; empty if nothing is
};

/// What the verb and its words say. Values are checked.
Recipe recipe_of(const Options& options);

/// What the verb's options say, as arguments of `call`. `*error` says which of them cannot be.
QStringList option_words(const Options& options, QString* error);

/// Sends the command, and prints what it brings.
class RecipeVerb : public Dialogue
{
public:
    using Dialogue::Dialogue;

    bool prepare() override;

protected:
    void show_reply(const XMLTree& message, const XMLTree& body, const Reply* reply) override;

private:
    struct Column
    {
        const Tag* tag;
        std::vector<AString> path; ///< from the body of the reply
    };

    void choose_columns(const Reply& reply);
    void show_members(const XMLTree& container, const Tag& tag);
    void show_row(const XMLTree& body, const std::vector<Column>& columns, const QJsonObject& object);
    QJsonObject object_of(const XMLTree& body, const Reply& reply) const;
    void count();

    const Reply* columns_of_ = nullptr; // the reply that the columns are chosen for
    std::vector<Column> columns_;
    QStringList head_;
    quint64 count_ = 0;
};
