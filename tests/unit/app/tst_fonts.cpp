#include "app/fonts.h"
#include "ui/looks.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QGlyphRun>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QRawFont>
#include <QTextLayout>
#include <QtTest>

namespace {

const QString desktopFamily = QStringLiteral("Noto Serif CJK JP");
constexpr qreal desktopPoints = 13;

/// The families with which a text is really painted.
QStringList paintedWith(const QFont& font, const QString& text)
{
    QTextLayout layout(text, font);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    QStringList families;
    for (const QGlyphRun& run : layout.glyphRuns())
        families.append(run.rawFont().familyName());
    families.removeDuplicates();
    return families;
}

} // namespace

class TestFonts : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void allNamesShowOneFamily_data();
    void allNamesShowOneFamily();
    void widgetsHaveTheTypefaceOfTheViews();
    void otherLettersAreTheDesktops_data() { allNamesShowOneFamily_data(); }
    void otherLettersAreTheDesktops();
};

void TestFonts::initTestCase()
{
    if (!QFontDatabase().hasFamily(desktopFamily))
        QSKIP("Not a font for all letters on this machine.");
    QFont desktops(desktopFamily);
    desktops.setPointSizeF(desktopPoints);
    QApplication::setFont(desktops);
    unifyFonts();
    applyLooks();
}

void TestFonts::allNamesShowOneFamily_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name : {"Helvetica", "Helvetica Neue", "Poppins", "Tahoma"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TestFonts::allNamesShowOneFamily()
{
    QFETCH(QString, name);
    if (name != "Helvetica" && QFontDatabase().hasFamily(name))
        QSKIP("This desktop has the family itself.");
    const QString latin = QStringLiteral("Settings");
    QCOMPARE(paintedWith(QFont(name), latin), paintedWith(QApplication::font(), latin));
    QVERIFY(paintedWith(QFont(name), latin) != QStringList(desktopFamily));
}

void TestFonts::widgetsHaveTheTypefaceOfTheViews()
{
    const QMenuBar bar;
    const QMenu menu;
    const QMessageBox box;
    for (const QWidget* widget : std::initializer_list<const QWidget*> {&bar, &menu, &box}) {
        QCOMPARE(widget->font().family(), QString("Helvetica"));
        QCOMPARE(widget->font().pointSizeF(), desktopPoints);
    }
}

void TestFonts::otherLettersAreTheDesktops()
{
    QFETCH(QString, name);
    const QString japanese = QString::fromUtf8("設定");
    QCOMPARE(paintedWith(QFont(name), japanese), QStringList(desktopFamily));
}

QTEST_MAIN(TestFonts)
#include "tst_fonts.moc"
