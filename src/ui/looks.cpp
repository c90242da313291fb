#include "ui/looks.h"

#include "ui/viewcolours.h"

#include <QApplication>
#include <QFontInfo>
#include <QMenuBar>
#include <QPalette>
#include <QProxyStyle>

namespace {

using namespace ViewColours;

// Lengths follow the font, and with it the screen's density: 0.55em around it make an entry 35 px
// high at 96 dpi. Names in @ are those of the colours. The balloon is Qt's own, for a tray without
// a notification service: it is pale whatever the palette.
const char* const sheet = R"(
QMenuBar { background: @surface@; color: white; padding: 0; }
QMenuBar::item { padding: 0.55em 0.7em; background: transparent; }
QMenuBar::item:selected { background: @raised@; }
QMenuBar::item:pressed { background: @secondary900@; }
QMenuBar::item:disabled { color: @dimmed@; }
QMenu { background: @raised@; color: white; border: 1px solid @line@; padding: 0.3em; }
QMenu::item { padding: 0.6em 2em 0.6em 1em; border-radius: 3px; }
QMenu::item:selected { background: @secondary900@; }
QMenu::item:disabled { color: @dimmed@; }
QMenu::separator { height: 1px; background: @line@; margin: 0.3em 1em; }
QDialog QPushButton { background: @secondary900@; color: white; border: 2px solid transparent;
                      border-radius: 3px; padding: 0.5em 1.5em; min-width: 4em; }
QDialog QPushButton:hover { background: @hovered@; border-color: @secondary500@; }
QDialog QPushButton:pressed { background: @pressed@; }
QDialog QPushButton:focus { border-color: white; }
QDialog QPushButton:disabled { background: @raised@; color: @dimmed@; }
QDialogButtonBox { dialogbuttonbox-buttons-have-icons: 0; }
QBalloonTip QLabel { color: black; }
QBalloonTip QPushButton { background: transparent; border: none; }
QToolTip { background: @raised@; color: white; border: 1px solid @line@; }
)";

struct Colour
{
    const char* name;
    const char* value;
};

constexpr Colour colours[] = {{"surface", surface},
                              {"raised", raised},
                              {"line", line},
                              {"dimmed", dimmed},
                              {"hovered", hovered},
                              {"pressed", pressed},
                              {"secondary500", secondary500},
                              {"secondary900", secondary900}};

struct PaletteRow
{
    QPalette::ColorRole role;
    const char* value;
};

constexpr PaletteRow paletteRows[] = {
    {QPalette::Window, surface},
    {QPalette::WindowText, "white"},
    {QPalette::Base, surface},
    {QPalette::AlternateBase, raised},
    {QPalette::Text, "white"},
    {QPalette::Button, raised},
    {QPalette::ButtonText, "white"},
    {QPalette::BrightText, "white"},
    {QPalette::Highlight, secondary900},
    {QPalette::HighlightedText, "white"},
    {QPalette::ToolTipBase, raised},
    {QPalette::ToolTipText, "white"},
    {QPalette::PlaceholderText, dimmed},
    {QPalette::Link, secondary500},
    {QPalette::LinkVisited, secondary500},
};

/// Leaves out the pictures of a menu bar's button for entries that have no place. All have in these
/// windows, and for those pictures Qt would load all its plug-ins for pictures.
class Style : public QProxyStyle
{
public:
    using QProxyStyle::QProxyStyle;

    QIcon standardIcon(StandardPixmap which, const QStyleOption* option,
                       const QWidget* widget) const override
    {
        return which == SP_ToolBarHorizontalExtensionButton
            ? QIcon()
            : QProxyStyle::standardIcon(which, option, widget);
    }
};

QPalette palette()
{
    // The constructor derives the shades of borders and edges.
    QPalette result {QColor(QLatin1String(raised)), QColor(QLatin1String(surface))};
    for (const PaletteRow& row : paletteRows)
        result.setColor(row.role, QLatin1String(row.value));
    for (const QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        result.setColor(QPalette::Disabled, role, QLatin1String(dimmed));
    return result;
}

/// The typeface of the views, in the desktop's size. Made anew each time, since a font keeps the
/// density under which it was made.
QFont font()
{
    const QFont present = QApplication::font();
    const qreal points = present.pointSizeF(); // -1 if its size is given in px
    QFont result(QStringLiteral("Helvetica"));
    result.setPointSizeF(points > 0 ? points : QFontInfo(present).pointSizeF());
    return result;
}

QString styleSheet()
{
    QString text = QLatin1String(sheet);
    for (const Colour& colour : colours)
        text.replace(QLatin1Char('@') + QLatin1String(colour.name) + QLatin1Char('@'),
                     QLatin1String(colour.value));
    return text;
}

} // namespace

void applyLooks()
{
    QApplication::setStyle(new Style(QStringLiteral("Fusion")));
    QApplication::setPalette(palette());
    QApplication::setFont(font());
    qApp->setStyleSheet(styleSheet());
}

void refreshLooks()
{
    QApplication::setFont(font());
    qApp->setStyleSheet(styleSheet());
}

int menuBarHeight()
{
    QMenuBar bar;
    bar.addAction(QStringLiteral("File"));
    return bar.sizeHint().height();
}
