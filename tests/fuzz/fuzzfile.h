#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>

/// A regular file in memory with a path of its own, for readers that take a path.
class FuzzFile
{
public:
    /// Ends the process when the file cannot be made.
    FuzzFile();

    FuzzFile(const FuzzFile&) = delete;
    FuzzFile& operator=(const FuzzFile&) = delete;

    QString path() const;

    /// Replaces the content with the @p size bytes at @p data.
    void write(const std::uint8_t* data, std::size_t size);
    QByteArray read() const;

private:
    int descriptor;
};

/// Drops every log line: they would be most of the run.
void silenceLog();

/// Ends the run and keeps the input unless @p holds.
void require(bool holds, const char* what);
