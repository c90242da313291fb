#pragma once

#include <QCoreApplication>
#include <QString>

/**
 * Whether the files that engine and controller share have a place: status and settings would be
 * lost without a word.
 */
class DataDirectoryCheck
{
    Q_DECLARE_TR_FUNCTIONS(DataDirectoryCheck)

public:
    /// What is wrong with GS::dataDir and what the user can do about it; empty when all is well.
    static QString problem();
};
