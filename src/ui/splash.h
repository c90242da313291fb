#pragma once

#include <QObject>
#include <QString>

#include <memory>

class QSplashScreen;

/**
 * The brand's splash picture, ":/qml/splash_<brand>.png".
 *
 * It is on the screen as soon as the object exists and stays until it is closed; there is no
 * timer. A brand without a picture shows an empty window of 0 x 0 px, which is closed like any
 * other. GUI thread only.
 */
class Splash : public QObject
{
    Q_OBJECT

public:
    /// Shows the picture of @p brand, cut to its opaque parts.
    explicit Splash(QString brand);
    ~Splash() override;

signals:
    // Emitted by anyone, they run the slot of the same role.
    void splashShowWindow();
    void splashCloseWindow();

public slots:
    /// Shows the splash on top of all other windows.
    void slotShowWindow();

    /// Closes the splash; without effect, apart from a line on the log, when it is closed.
    void slotCloseWindow();

private:
    std::unique_ptr<QSplashScreen> splashScreen;
    bool shown = false; ///< between a show and the next close
};
