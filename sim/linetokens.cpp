#include "linetokens.h"

namespace {

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

struct Escape
{
    char letter;
    char meaning;
};

constexpr Escape escapes[] = {{'n', '\n'}, {'r', '\r'}, {'t', '\t'}, {'"', '"'}, {'\\', '\\'}};

} // namespace

bool LineTokens::cut(const QByteArray& line, QString* reason)
{
    words.clear();
    position = 0;
    int at = 0;
    while (at < line.size()) {
        if (isBlank(line.at(at))) {
            ++at;
            continue;
        }
        if (line.at(at) == '#')
            return true;
        Word word;
        if (line.at(at) == '"') {
            if (!takeQuoted(line, at, word, reason))
                return false;
        } else {
            while (at < line.size() && !isBlank(line.at(at)))
                word.text.append(line.at(at++));
        }
        words.append(word);
    }
    return true;
}

QByteArray LineTokens::peek() const
{
    return atEnd() ? QByteArray() : words.at(position).text;
}

bool LineTokens::isQuoted() const
{
    return !atEnd() && words.at(position).quoted;
}

QByteArray LineTokens::take()
{
    return atEnd() ? QByteArray() : words.at(position++).text;
}

bool LineTokens::takeIf(const char* keyword)
{
    if (isQuoted() || peek() != keyword)
        return false;
    ++position;
    return true;
}

bool LineTokens::takeQuoted(const QByteArray& line, int& at, Word& word, QString* reason)
{
    word.quoted = true;
    ++at;
    while (at < line.size() && line.at(at) != '"') {
        if (line.at(at) == '\\') {
            if (!takeEscape(line, at, word, reason))
                return false;
        } else {
            word.text.append(line.at(at++));
        }
    }
    if (at == line.size()) {
        *reason = QStringLiteral("the quoted text has no end");
        return false;
    }
    ++at;
    if (at < line.size() && !isBlank(line.at(at))) {
        *reason = QStringLiteral("a blank is missing after the quoted text");
        return false;
    }
    return true;
}

bool LineTokens::takeEscape(const QByteArray& line, int& at, Word& word, QString* reason)
{
    const char letter = at + 1 < line.size() ? line.at(at + 1) : '\0';
    for (const Escape& escape : escapes) {
        if (escape.letter == letter) {
            word.text.append(escape.meaning);
            at += 2;
            return true;
        }
    }
    *reason = QStringLiteral("\"%1\" is no escape").arg(QString::fromUtf8(line.mid(at, 2)));
    return false;
}
