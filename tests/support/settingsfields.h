#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>

#include <cstddef>
#include <vector>

class GS;

/// One member of the settings as the tests see it.
struct SettingsField
{
    QByteArray name;
    QByteArray value; ///< numbers with all their digits, flags as 0 and 1, vectors as "x,y"
    QByteArray type; ///< "int", "double", "bool", "string", "cstr", "QString",
                     ///< "EVector" or "6 double"
    std::ptrdiff_t offset; ///< from the start of the object
    std::ptrdiff_t size;
    std::ptrdiff_t alignment;
};

/// Every field of @p settings in the order of the declaration.
std::vector<SettingsField> settingsFields(const GS& settings);

/// The same as values by name.
QMap<QByteArray, QByteArray> settingsValues(const GS& settings);

/// The new values of the fields in which @p after differs from @p before.
QMap<QByteArray, QByteArray> settingsChanges(const GS& before, const GS& after);

/// The text in which a double field's value is written above.
QByteArray settingsNumber(double number);
