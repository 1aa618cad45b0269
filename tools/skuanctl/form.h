// What may stand behind a verb on the command line: its arguments and its options. For a verb that stands
// for a command of the protocol most of it follows from the command.
#pragma once

#include <skuanctl/catalogue.h>

struct VerbRow;

struct Word
{
    QString option;      ///< without its dashes; empty: an argument, known by its place
    QString placeholder; ///< of the value; empty: an option without one
    bool optional = true;
    bool repeats = false;

    // Of a word that is a value of the command's.

    const Tag* tag = nullptr; ///< null: the verb takes the word itself
    QString path = {};        ///< where the value goes: "ListElement.Transition.TransitionType"
    QString fallback = {};    ///< the value if the word is not given; empty: none
    QString nothing = {};     ///< the text that says, in the place of a value, that there is none
    QString help = {};        ///< of a word that the verb takes itself
};

struct Form
{
    std::vector<Word> places;
    std::vector<Word> options;
};

/// The row's `words` are taken apart by blanks. Each is one of
///   Channel   [Channel]          a value of the command's, by its place; in brackets it may be left out
///   LoopIn|off                   the same, where `off` says that there is none
///   ClipID...   [Key...]         any number of them
///   TrackSet=video,audio         an option, with the value that it has if it is not given
///   !Channel                     a value of the command's that the verb does not offer
///   FILE   [FILE]   [--wait]   [--bind=ADDRESS]    words that the verb takes itself
/// What the command takes and the words do not name is an option.
Form form_of(const VerbRow& row);

/// "cue CHANNEL CLIP [OPTION...]".
QString usage(const VerbRow& row);

/// "--at POSITION", "[DIRECTORY]", "CLIP...".
QString spelled(const Word& word);

/// The commands that the row stands for; the first that takes just what is given is sent.
std::vector<const Command*> commands_of(const VerbRow& row);
