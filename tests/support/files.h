#pragma once

#include <QByteArray>
#include <QFile>

#include <cstdio>

/// The content of the file at @p path; @p otherwise where it cannot be read.
inline QByteArray contentOf(const QString& path, const QByteArray& otherwise = "cannot be read")
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : otherwise;
}

/// Makes the file at @p path, or replaces what it holds. Whether it could.
inline bool writeFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
}

/// Gives the file @p from the name @p to, in place of what has it. Whether it could.
inline bool moveOver(const QString& from, const QString& to)
{
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

/// As writeFile(), but nobody sees a part of the content: the file appears whole.
inline bool replaceFile(const QString& path, const QByteArray& content)
{
    const QString fresh = path + QStringLiteral(".new");
    return writeFile(fresh, content) && moveOver(fresh, path);
}

/// As replaceFile(), for a program: one that is open for writing cannot be started.
inline bool writeScript(const QString& path, const QByteArray& text)
{
    const QString fresh = path + QStringLiteral(".new");
    return writeFile(fresh, text)
        && QFile::setPermissions(fresh, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner)
        && moveOver(fresh, path);
}
