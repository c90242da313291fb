#pragma once

#include <QString>

/// The help of vireonctl, made from the table of its verbs.
QString usageText();
