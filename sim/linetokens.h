#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

/**
 * One line of a scenario, cut into words, and a place in it.
 *
 * Words are separated by blanks and tabs; a word in double quotes may hold them, and the escapes
 * \n \r \t \" \\. A word that begins with "#" and all after it is a comment.
 */
class LineTokens
{
public:
    /// Cuts @p line; false, with @p reason filled, when a quoted word is malformed.
    bool cut(const QByteArray& line, QString* reason);

    bool atEnd() const { return position == words.size(); }

    /// The word at the place; empty at the end.
    QByteArray peek() const;

    /// Whether the word at the place was quoted.
    bool isQuoted() const;

    /// Takes the word at the place and moves on; empty at the end.
    QByteArray take();

    /// Moves on when the word at the place is the unquoted @p keyword; whether it was.
    bool takeIf(const char* keyword);

private:
    struct Word
    {
        QByteArray text;
        bool quoted = false;
    };

    static bool takeQuoted(const QByteArray& line, int& at, Word& word, QString* reason);
    static bool takeEscape(const QByteArray& line, int& at, Word& word, QString* reason);

    QVector<Word> words;
    int position = 0;
};
