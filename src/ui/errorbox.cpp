#include "ui/errorbox.h"

#include "ui/programicon.h"

#include <QIcon>
#include <QMessageBox>
#include <QStyle>

void showErrorBox(const QString& title, const QString& text)
{
    QMessageBox box(QMessageBox::Critical, title, text, QMessageBox::Ok);
    box.setWindowIcon(programIcon());
    // As large as the style's own picture, which looks like another program's.
    const QIcon picture(QStringLiteral(":/qml/error.png"));
    box.setIconPixmap(picture.pixmap(box.style()->pixelMetric(QStyle::PM_MessageBoxIconSize)));
    // The splash of another copy is above all other windows, too.
    box.setWindowFlag(Qt::WindowStaysOnTopHint);
    box.exec();
}
