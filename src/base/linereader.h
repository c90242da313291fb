#pragma once

#include <QChar>

#include <functional>

/**
 * Splits a text of any length into lines, of which it keeps a bounded part each: a line of any
 * length costs the same memory, and is one line.
 *
 * Text is QByteArray or QString. A line ends with "\n", which is not part of it.
 */
template <class Text> class LineReader
{
public:
    /// Gives the next part of the text, of about this length, and nothing at its end.
    using Source = std::function<Text(int)>;

    LineReader(Source partSource, int lineLimit)
        : source(std::move(partSource))
        , limit(lineLimit)
    {
    }

    /// Goes on to the next line; false when nothing is left, not even an empty line.
    bool next()
    {
        text.clear();
        cut = ended = false;
        bool found = false;
        while (!ended && (position < part.size() || readPart())) {
            found = true;
            takePart();
        }
        return found;
    }

    const Text& line() const { return text; }

    /// Whether the line was longer than the limit.
    bool isCut() const { return cut; }

    /// Whether the line ended with "\n", and not with the text.
    bool hasBreak() const { return ended; }

private:
    bool readPart()
    {
        part = source(partSize);
        position = 0;
        return !part.isEmpty();
    }

    void takePart()
    {
        const int lineEnd = part.indexOf('\n', position);
        ended = lineEnd >= 0;
        const int size = (ended ? lineEnd : part.size()) - position;
        const int kept = qMin(size, limit - text.size());
        text.append(part.mid(position, kept));
        cut = cut || kept < size;
        position += size + (ended ? 1 : 0);
    }

    static constexpr int partSize = 16384;

    Source source;
    int limit;
    Text text;
    Text part;
    int position = 0; ///< in part
    bool cut = false;
    bool ended = false;
};
