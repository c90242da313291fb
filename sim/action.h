#pragma once

#include <QByteArray>

#include <optional>

/// How the status file comes into being.
enum class WriteStyle {
    Whole, ///< a new file takes the old one's place in one step
    Slowly, ///< the old file is emptied, then filled byte by byte over a given time
    Halves ///< the old file is emptied, then filled in two halves with a given pause between them
};

/// How the engine leaves: with an exit code, or killed by a signal it sends to itself.
struct Death
{
    enum How { ByExit, BySignal };

    How how = ByExit;
    int value = 0; ///< the exit code, or the signal's number
};

/**
 * One thing that the simulated engine does, as one line of a scenario tells it.
 *
 * Which members count depends on the kind; the others keep their defaults.
 */
struct Action
{
    enum Kind {
        Ignore, ///< nothing; takes the place of a healthy engine's reaction
        Status, ///< write the status file with `result`, and `firmware` when it is given
        Firmware, ///< write the status file with `firmware` and the last result
        Raw, ///< write `text` into the status file
        Remove, ///< delete the status file
        Print, ///< `text` on standard output
        PrintError, ///< `text` on standard error
        Die ///< leave as `death` says
    };

    /// Whether the action changes the status file.
    bool touchesStatusFile() const;

    /// Whether the action decides the result that the status file shows.
    bool decidesResult() const;

    Kind kind = Ignore;
    int result = 0;
    std::optional<int> firmware;
    QByteArray text; ///< with its line end, where it has one
    int repeat = 1; ///< how many times `text` is printed
    WriteStyle style = WriteStyle::Whole;
    int styleMs = 0; ///< ms: the whole time of Slowly, the pause of Halves
    std::optional<Death> death; ///< of Die; of a write that ends the engine in the same act
};
