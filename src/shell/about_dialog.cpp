#include "shell/about_dialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "shell/application_info.h"

namespace rm8::shell {

AboutDialog::AboutDialog(QWidget* owner) : QDialog(owner)
{
    setObjectName(QStringLiteral("InfoProgram"));
    setWindowTitle(QStringLiteral("Informace o programu"));
    setModal(true);

    auto* name = new QLabel(programName(), this);
    name->setObjectName(QStringLiteral("lblProgram"));
    QFont bold = name->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.2);
    name->setFont(bold);

    auto* version = new QLabel(QStringLiteral("Verze %1").arg(programVersion()), this);
    version->setObjectName(QStringLiteral("lblVerze"));

    auto* purpose = new QLabel(
        QStringLiteral("Program slouží k nastavení GSM stanic řady RM8 (RM8, RMA8, RMADC2, RMADC3) ovládaných "
                       "pomocí SMS zpráv. Nastavení stanice lze upravit, zapsat do stanice konfiguračním kabelem "
                       "přes sériový port, načíst ze stanice zpět a uložit do souboru (*.eep)."),
        this);
    purpose->setObjectName(QStringLiteral("lblPopis"));
    purpose->setWordWrap(true);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("btOk"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(name);
    layout->addWidget(version);
    layout->addWidget(purpose);
    layout->addWidget(buttons);
    setMinimumWidth(420);
}

} // namespace rm8::shell
