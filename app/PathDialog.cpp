#include "app/PathDialog.h"

#include "widgets/Modal.h"
#include "widgets/OpenWhereClosed.h"
#include "widgets/ScreenRoom.h"

#include <QHeaderView>
#include <QTreeView>

namespace {

constexpr QSize dialogSize(760, 460);

} // namespace

PathDialog::PathDialog(const QString &title, const Labels &labels, QWidget *parent)
    : QFileDialog(parent)
{
    // This comes first: settings made for the system's dialog would be lost.
    setOption(DontUseNativeDialog);
    setWindowIcon(Modal::windowIcon());
    setWindowTitle(title);
    setLabelText(LookIn, labels.lookIn);
    setLabelText(FileName, labels.fileName);
    setLabelText(FileType, labels.fileType);
    setLabelText(Accept, labels.accept);
    setLabelText(Reject, labels.reject);
    // The default size cuts off the dates.
    resize(dialogSize.boundedTo(screenRoom(*this).size()));
    setObjectName(title); // gives each purpose a position of its own
    openWhereClosed(*this);
    QHeaderView *const header = findChild<QTreeView *>()->header();
    header->setSectionResizeMode(QHeaderView::ResizeToContents);
    header->setSectionResizeMode(0, QHeaderView::Stretch);
}

QString PathDialog::ask()
{
    return Modal::run(*this) == Accepted ? selectedFiles().value(0) : QString();
}
