#include "support/qtcalls.h"

#include <QAction>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDebug>
#include <QLayout>
#include <QMenu>
#include <QMenuBar>
#include <QQmlContext>
#include <QQuickView>
#include <QScreen>
#include <QSystemTrayIcon>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <dlfcn.h>
#include <utility>

// The functions below stand in front of Qt's of the same name: what this program is linked from
// finds them first. Each hands on to the one that it hides, which it looks up by its symbol.

namespace {

std::atomic<QtCalls*> living {nullptr}; // sleeps are looked at on every thread

constexpr int shortestHeldMs = 1000;

template <typename Result, typename... Arguments>
Result handOn(const char* symbol, Arguments... arguments)
{
    using Function = Result (*)(Arguments...);
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, symbol))(arguments...);
}

void tell(const char* name, const QString& call)
{
    if (living)
        qDebug().noquote() << QLatin1String(name) + QLatin1Char('.') + call;
}

void tell(const QObject* object, const QString& call)
{
    if (living)
        tell(object->metaObject()->className(), call);
}

QString word(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

/// The signal that a pointer to a member stands for, as connect() finds it.
QByteArray nameOf(void** signal, const QMetaObject* meta)
{
    for (; meta; meta = meta->superClass()) {
        int index = -1;
        void* arguments[] = {&index, signal};
        meta->static_metacall(QMetaObject::IndexOfMethod, 0, arguments);
        if (index >= 0)
            return meta->method(meta->methodOffset() + index).name();
    }
    return {};
}

} // namespace

QtCalls::QtCalls()
{
    living = this;
}

QtCalls::~QtCalls()
{
    living = nullptr;
    for (const Timer& timer : timers)
        timer.slot->destroyIfLastRef();
}

QtCalls* QtCalls::current()
{
    return living;
}

void QtCalls::runTimers()
{
    for (const Timer& timer : std::exchange(timers, {})) {
        void* arguments[] = {nullptr};
        if (timer.receiver)
            timer.slot->call(timer.receiver, arguments);
        timer.slot->destroyIfLastRef();
    }
}

// --- Objects ----------------------------------------------------------------------------------

bool QObject::setProperty(const char* name, const QVariant& value)
{
    if (living)
        qDebug().noquote() << "set" << name << '=' << value.toString();
    return handOn<bool>("_ZN7QObject11setPropertyEPKcRK8QVariant", this, name, &value);
}

QMetaObject::Connection QObject::connectImpl(const QObject* sender, void** signal,
                                             const QObject* receiver, void** slot,
                                             QtPrivate::QSlotObjectBase* slotObject,
                                             Qt::ConnectionType type, const int* types,
                                             const QMetaObject* meta)
{
    tell(sender, QStringLiteral("connect(%1)").arg(QString(nameOf(signal, meta))));
    return handOn<QMetaObject::Connection>(
        "_ZN7QObject11connectImplEPKS_PPvS1_S3_PN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionType"
        "EPKiPK11QMetaObject",
        sender, signal, receiver, slot, slotObject, type, types, meta);
}

void QTimer::singleShotImpl(int ms, Qt::TimerType type, const QObject* receiver,
                            QtPrivate::QSlotObjectBase* slot)
{
    if (!living || ms < shortestHeldMs) {
        handOn<void>("_ZN6QTimer14singleShotImplEiN2Qt9TimerTypeEPK7QObjectPN9QtPrivate"
                     "15QSlotObjectBaseE",
                     ms, type, receiver, slot);
        return;
    }
    tell(receiver, QStringLiteral("singleShot(%1)").arg(ms));
    living.load()->timers.push_back({const_cast<QObject*>(receiver), slot});
}

void QThread::msleep(unsigned long ms)
{
    if (living && QThread::currentThread() == QCoreApplication::instance()->thread())
        tell("QThread", QStringLiteral("msleep(%1)").arg(ms));
    else
        handOn<void>("_ZN7QThread6msleepEm", ms);
}

void QCoreApplication::quit()
{
    if (living)
        tell("QCoreApplication", QStringLiteral("quit()"));
    else
        handOn<void>("_ZN16QCoreApplication4quitEv");
}

QDBusPendingCall QDBusConnection::asyncCall(const QDBusMessage& message, int timeout) const
{
    if (!living) {
        return handOn<QDBusPendingCall>("_ZNK15QDBusConnection9asyncCallERK12QDBusMessagei", this,
                                        &message, timeout);
    }
    const QList<QVariant> arguments = message.arguments();
    const QString told = message.member() == QLatin1String("Notify")
        ? QStringLiteral("Notify(%1, %2)").arg(arguments[3].toString(), arguments[4].toString())
        : message.member() + QStringLiteral("()");
    tell("QDBusConnection", told);
    return QDBusPendingCall::fromError(QDBusError(QDBusError::NoServer, QString()));
}

// --- Windows ----------------------------------------------------------------------------------

bool QWindow::close()
{
    tell(this, QStringLiteral("close()"));
    return handOn<bool>("_ZN7QWindow5closeEv", this);
}

qreal QScreen::refreshRate() const
{
    return living ? living.load()->refreshRate : handOn<qreal>("_ZNK7QScreen11refreshRateEv", this);
}

void QQuickView::setSource(const QUrl& source)
{
    tell(this, QStringLiteral("setSource(%1)").arg(source.toString()));
    handOn<void>("_ZN10QQuickView9setSourceERK4QUrl", this, &source);
}

void QQmlContext::setContextProperty(const QString& name, QObject* value)
{
    tell(this, name);
    handOn<void>("_ZN11QQmlContext18setContextPropertyERK7QStringP7QObject", this, &name, value);
}

void QQmlContext::setContextProperty(const QString& name, const QVariant& value)
{
    tell(this, name);
    handOn<void>("_ZN11QQmlContext18setContextPropertyERK7QStringRK8QVariant", this, &name, &value);
}

// --- Widgets ----------------------------------------------------------------------------------

QWidget* QWidget::createWindowContainer(QWindow* content, QWidget* parent, Qt::WindowFlags flags)
{
    tell(content, QStringLiteral("createWindowContainer()"));
    return handOn<QWidget*>(
        "_ZN7QWidget21createWindowContainerEP7QWindowPS_6QFlagsIN2Qt10WindowTypeEE", content,
        parent, flags);
}

void QWidget::setVisible(bool visible)
{
    tell(this, QStringLiteral("setVisible(%1)").arg(word(visible)));
    handOn<void>("_ZN7QWidget10setVisibleEb", this, visible);
}

void QWidget::raise()
{
    tell(this, QStringLiteral("raise()"));
    handOn<void>("_ZN7QWidget5raiseEv", this);
}

void QWidget::activateWindow()
{
    tell(this, QStringLiteral("activateWindow()"));
    handOn<void>("_ZN7QWidget14activateWindowEv", this);
}

void QWidget::setWindowTitle(const QString& title)
{
    tell(this, QStringLiteral("setWindowTitle(%1)").arg(title));
    handOn<void>("_ZN7QWidget14setWindowTitleERK7QString", this, &title);
}

void QWidget::setFocusPolicy(Qt::FocusPolicy policy)
{
    tell(this, QStringLiteral("setFocusPolicy(%1)").arg(policy));
    handOn<void>("_ZN7QWidget14setFocusPolicyEN2Qt11FocusPolicyE", this, policy);
}

void QWidget::setMinimumSize(int width, int height)
{
    tell(this, QStringLiteral("setMinimumSize(%1, %2)").arg(width).arg(height));
    handOn<void>("_ZN7QWidget14setMinimumSizeEii", this, width, height);
}

void QWidget::setFixedSize(const QSize& size)
{
    tell(this, QStringLiteral("setFixedSize(%1, %2)").arg(size.width()).arg(size.height()));
    handOn<void>("_ZN7QWidget12setFixedSizeERK5QSize", this, &size);
}

void QWidget::adjustSize()
{
    tell(this, QStringLiteral("adjustSize()"));
    handOn<void>("_ZN7QWidget10adjustSizeEv", this);
}

void QWidget::move(const QPoint& to)
{
    tell(this, QStringLiteral("move(%1, %2)").arg(to.x()).arg(to.y()));
    handOn<void>("_ZN7QWidget4moveERK6QPoint", this, &to);
}

void QLayout::setMenuBar(QWidget* bar)
{
    tell(this, QStringLiteral("setMenuBar()"));
    handOn<void>("_ZN7QLayout10setMenuBarEP7QWidget", this, bar);
}

QAction* QMenuBar::addMenu(QMenu* menu)
{
    tell(this, QStringLiteral("addMenu(%1)").arg(menu->title()));
    return handOn<QAction*>("_ZN8QMenuBar7addMenuEP5QMenu", this, menu);
}

void QAction::setEnabled(bool on)
{
    tell(this, QStringLiteral("%1.setEnabled(%2)").arg(text(), word(on)));
    handOn<void>("_ZN7QAction10setEnabledEb", this, on);
}

void QAction::setChecked(bool on)
{
    tell(this, QStringLiteral("%1.setChecked(%2)").arg(text(), word(on)));
    handOn<void>("_ZN7QAction10setCheckedEb", this, on);
}

// --- Tray -------------------------------------------------------------------------------------

bool QSystemTrayIcon::isSystemTrayAvailable()
{
    return living ? living.load()->hasTray
                  : handOn<bool>("_ZN15QSystemTrayIcon21isSystemTrayAvailableEv");
}

void QSystemTrayIcon::setVisible(bool visible)
{
    tell(this, QStringLiteral("setVisible(%1)").arg(word(visible)));
    handOn<void>("_ZN15QSystemTrayIcon10setVisibleEb", this, visible);
}

void QSystemTrayIcon::showMessage(const QString& title, const QString& text, MessageIcon icon,
                                  int ms)
{
    tell(this, QStringLiteral("showMessage(%1, %2, %3, %4)").arg(title, text).arg(icon).arg(ms));
    if (!living) {
        handOn<void>("_ZN15QSystemTrayIcon11showMessageERK7QStringS2_NS_11MessageIconEi", this,
                     &title, &text, icon, ms);
    }
}
