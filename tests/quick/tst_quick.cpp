#include "app/fonts.h"
#include "app/resources.h"
#include "quick/fakecontroller.h"
#include "quick/testlog.h"
#include "support/contrast.h"
#include "support/patience.h"

#include <QCoreApplication>
#include <QEasingCurve>
#include <QFont>
#include <QImage>
#include <QKeyEvent>
#include <QLocale>
#include <QPainter>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickItemGrabResult>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QtMath>
#include <QtQuickTest>
#include <QTranslator>
#include <QWindow>

#include <cstdio>
#include <unistd.h>

/// Chooses the language that views made from now on speak.
class Language : public QObject
{
    Q_OBJECT

public:
    /// @p locale as in "de_DE". False where there is no catalogue for it.
    Q_INVOKABLE bool choose(const QString& locale)
    {
        QCoreApplication::removeTranslator(&translator);
        QLocale::setDefault(QLocale(locale));
        const bool loaded = translator.load(QStringLiteral("vireon-menu-desktop-")
                                                + locale.section(QLatin1Char('_'), 0, 0),
                                            QStringLiteral(":/translations"));
        QCoreApplication::installTranslator(&translator);
        return loaded;
    }

private:
    QTranslator translator;
};

/// What the tests' own keyboard cannot do.
class Keyboard : public QObject
{
    Q_OBJECT

public:
    /// A key that is held down goes on to send presses of this kind.
    Q_INVOKABLE void repeat(QQuickItem* item, int key)
    {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
        QCoreApplication::sendEvent(item->window(), &event);
    }

    /// To a window of its own. False when the keyboard does not go there.
    Q_INVOKABLE bool leave(QQuickItem* item)
    {
        other.reset(new QWindow);
        other->show();
        other->requestActivate();
        return QTest::qWaitFor([&] { return !item->window()->isActive(); }, patienceMs);
    }

    Q_INVOKABLE bool comeBack(QQuickItem* item)
    {
        other.reset();
        item->window()->requestActivate();
        return QTest::qWaitFor([&] { return item->window()->isActive(); }, patienceMs);
    }

private:
    QScopedPointer<QWindow> other;
};

/// What a view's source declares and its items do not tell.
class Source : public QObject
{
    Q_OBJECT

public:
    /// The ids of an item: in its own file, and in the files that use that one.
    Q_INVOKABLE QStringList idsOf(QObject* item) const
    {
        QStringList ids;
        for (const QQmlContext* context = qmlContext(item); context;
             context = context->parentContext())
            ids += context->nameForObject(item);
        return ids;
    }

    /// The Behaviors of an item's properties or, for "anchors", of theirs: "DURATION ms, EASING".
    /// Those that have not moved anything yet have none.
    Q_INVOKABLE QStringList behaviorsOf(QObject* item, const QString& group = {}) const
    {
        const QVariant grouped = item->property(group.toLatin1());
        const QObject* owner = group.isEmpty() ? item : grouped.value<QObject*>();
        QStringList found;
        for (const QObject* child : childrenOf(owner, "QQuickBehavior")) {
            const auto* animation = child->property("animation").value<QObject*>();
            found.append(animation ? described(*animation) : QString());
        }
        return found;
    }

    /// The animations of an item that start by themselves: "FROM to TO: DURATION ms, EASING, LOOPS
    /// times".
    Q_INVOKABLE QStringList animationsOf(QObject* item) const
    {
        QStringList found;
        for (const QObject* child : childrenOf(item, "QQuickNumberAnimation"))
            found.append(child->property("from").toString() + " to "
                         + child->property("to").toString() + ": " + described(*child) + ", "
                         + child->property("loops").toString() + " times");
        return found;
    }

private:
    static QObjectList childrenOf(const QObject* item, const char* type)
    {
        QObjectList found;
        for (QObject* child : item->children()) {
            if (child->inherits(type))
                found.append(child);
        }
        return found;
    }

    static QString described(const QObject& animation)
    {
        const auto easing = animation.property("easing").toEasingCurve().type();
        return animation.property("duration").toString() + " ms, "
            + QVariant::fromValue(easing).toString();
    }
};

/// What an item and its children look like.
class Picture : public QObject
{
    Q_OBJECT

public:
    explicit Picture(const QImage& picture)
        : image(picture)
    {
    }

    /// How much a text of this colour, with this opacity, stands out from what most of @p area
    /// shows.
    Q_INVOKABLE double contrastOfText(const QRectF& area, const QColor& text, double opacity) const
    {
        for (const QColor& background : coloursOf(image.copy(area.toAlignedRect()))) {
            if (background != text)
                return contrast(mixed(text, background, opacity), background);
        }
        return 1;
    }

    /// How many rows of @p area something is painted on.
    Q_INVOKABLE int rowsOf(const QRectF& area) const
    {
        const QImage part = image.copy(area.toRect());
        const QColor around = part.pixelColor(0, 0);
        int rows = 0;
        for (int y = 0; y < part.height(); ++y) {
            bool painted = false;
            for (int x = 0; x < part.width() && !painted; ++x)
                painted = part.pixelColor(x, y) != around;
            rows += painted;
        }
        return rows;
    }

    Q_INVOKABLE bool equals(QObject* other) const
    {
        return image == qobject_cast<Picture*>(other)->image;
    }

    /// Whether what fills @p area, on one colour, has corners as smooth as if just painted.
    Q_INVOKABLE bool isRounded(const QRectF& area, double radius) const
    {
        const QRect place = area.toRect();
        const QColor around = image.pixelColor(place.topLeft() - QPoint(2, 2));
        const QColor fill = image.pixelColor(place.center().x(), place.top() + 2);
        QImage wanted(place.size(), QImage::Format_RGB32);
        wanted.fill(around);
        QPainter painter(&wanted);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(fill);
        painter.drawRoundedRect(wanted.rect(), radius, radius);
        painter.end();
        const QImage shown = image.copy(place).convertToFormat(QImage::Format_RGB32);
        const double step = qAbs(luminance(fill) - luminance(around));
        const int edge = qCeil(radius);
        for (int y = 0; y < edge; ++y) {
            for (int x = 0; x < edge; ++x) {
                for (const QPoint& pixel : {QPoint(x, y), QPoint(place.width() - 1 - x, y),
                                            QPoint(x, place.height() - 1 - y)}) {
                    const double difference =
                        luminance(shown.pixelColor(pixel)) - luminance(wanted.pixelColor(pixel));
                    if (qAbs(difference) > 0.5 * step)
                        return false;
                }
            }
        }
        return fill != around;
    }

    /// Whether a line of this thickness, and no other, lies inside each edge of @p area.
    Q_INVOKABLE bool isFramed(const QRectF& area, int thickness) const
    {
        const QRect place = area.toRect();
        const QPoint middle = place.center();
        const QVector<QPair<QPoint, QPoint>> edges {
            {QPoint(middle.x(), place.top()), QPoint(0, 1)},
            {QPoint(middle.x(), place.bottom()), QPoint(0, -1)},
            {QPoint(place.left(), middle.y()), QPoint(1, 0)},
            {QPoint(place.right(), middle.y()), QPoint(-1, 0)}};
        for (const auto& [begin, inwards] : edges) {
            for (int i = -1; i <= thickness; ++i) {
                const bool isLine = image.pixelColor(begin + i * inwards) == QColor(Qt::white);
                if (isLine != (i >= 0 && i < thickness))
                    return false;
            }
        }
        return true;
    }

private:
    static QColor mixed(const QColor& upper, const QColor& lower, double opacity)
    {
        const auto part = [&](double a, double b) { return opacity * a + (1 - opacity) * b; };
        return QColor::fromRgbF(part(upper.redF(), lower.redF()),
                                part(upper.greenF(), lower.greenF()),
                                part(upper.blueF(), lower.blueF()));
    }

    QImage image;
};

/// Takes pictures of what is shown.
class Camera : public QObject
{
    Q_OBJECT

public:
    /// A Picture; null when there is none within a minute.
    Q_INVOKABLE QObject* take(QQuickItem* item)
    {
        const auto result = item->grabToImage();
        QSignalSpy ready(result.data(), &QQuickItemGrabResult::ready);
        return ready.wait(patienceMs) ? new Picture(result->image()) : nullptr;
    }

    /// Saves the upper left @p width x @p height px of the window that @p item is in.
    Q_INVOKABLE bool save(QQuickItem* item, int width, int height, const QString& path)
    {
        return item->window()->grabWindow().copy(0, 0, width, height).save(path);
    }
};

/// Registers the program's views and the stand-ins before the tests are loaded.
class Setup : public QObject
{
    Q_OBJECT

public slots:
    void applicationAvailable()
    {
        initResources();
        QLocale::setDefault(QLocale(QStringLiteral("en_US")));
        // The widest font that a desktop may have in place of these: what fits then always fits.
        // A picture shows what this desktop has.
        if (qEnvironmentVariableIsSet("VIREON_SHEET")) {
            unifyFonts();
            return;
        }
        for (const char* family : {"Helvetica", "Helvetica Neue", "Poppins", "Tahoma"})
            QFont::insertSubstitution(QLatin1String(family), QStringLiteral("DejaVu Sans"));
    }

    void qmlEngineAvailable(QQmlEngine* engine)
    {
        QQmlContext* context = engine->rootContext();
        context->setContextProperty(QStringLiteral("mainwindow"), &controller);
        context->setContextProperty(QStringLiteral("sdk"), &sdk);
        context->setContextProperty(QStringLiteral("operatingSystem"), QStringLiteral("linux"));
        context->setContextProperty(QStringLiteral("language"), &language);
        context->setContextProperty(QStringLiteral("keyboard"), &keyboard);
        context->setContextProperty(QStringLiteral("camera"), &camera);
        context->setContextProperty(QStringLiteral("source"), &source);
        context->setContextProperty(QStringLiteral("testLog"), &log);
        context->setContextProperty(QStringLiteral("sheetFolder"),
                                    qEnvironmentVariable("VIREON_SHEET"));
    }

private:
    FakeController controller;
    FakeSdk sdk;
    Language language;
    Keyboard keyboard;
    Camera camera;
    Source source;
    TestLog log;
};

int main(int argc, char* argv[])
{
    QTEST_SET_MAIN_SOURCE_PATH
    Setup setup;
    const int failures =
        quick_test_main_with_setup(argc, argv, "quick", VIREON_SOURCE_DIR "/tests/quick", &setup);
    // Qt Quick keeps the last windows' textures for good: nothing of ours to look for at the end.
    std::fflush(nullptr);
    _exit(failures);
}

#include "tst_quick.moc"
