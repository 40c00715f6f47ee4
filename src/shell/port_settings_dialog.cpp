#include "shell/port_settings_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace rm8::shell {
namespace {

constexpr int kDeviceRole = Qt::UserRole;

std::size_t slotOf(int number)
{
    return static_cast<std::size_t>(number - kFirstListedPort);
}

} // namespace

PortSettingsDialog::PortSettingsDialog(const link::PortMap& current, const std::vector<SystemPort>& available,
                                       QWidget* parent)
    : QDialog(parent), base_(current)
{
    setObjectName(QStringLiteral("NastaveniPortu"));
    setWindowTitle(QStringLiteral("Nastavení sériových portů"));

    auto* intro = new QLabel(QStringLiteral("Zařízení, které se otevře pro každý port v seznamu "
                                            "(např. USB převodník nebo simulovaná stanice):"),
                             this);
    intro->setWordWrap(true);

    const auto platform = link::PortMap::platformDefault();
    auto* form = new QFormLayout;
    for (int number = kFirstListedPort; number <= kLastListedPort; ++number) {
        auto* editor = new QComboBox(this);
        editor->setObjectName(QStringLiteral("portDevice_%1").arg(number));
        editor->setEditable(true);
        editor->setInsertPolicy(QComboBox::NoInsert);
        // Room for the long stable names under /dev/serial/by-id.
        editor->setMinimumContentsLength(48);
        editor->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        for (const SystemPort& port : available) {
            const QString shown = port.description.isEmpty()
                                      ? port.device
                                      : QStringLiteral("%1 – %2").arg(port.device, port.description);
            editor->addItem(shown, port.device);
            editor->setItemData(editor->count() - 1, port.description, Qt::ToolTipRole);
        }
        // The list shows what each port is; the field keeps only the path
        // that will be opened.
        connect(editor, &QComboBox::activated, editor,
                [editor](int index) { editor->setEditText(editor->itemData(index, kDeviceRole).toString()); });
        if (const auto own = platform.entries().find(number); own != platform.entries().end())
            editor->lineEdit()->setPlaceholderText(QString::fromStdString(own->second));
        const auto chosen = current.entries().find(number);
        editor->setEditText(chosen != current.entries().end() ? QString::fromStdString(chosen->second) : QString());
        editors_[slotOf(number)] = editor;
        form->addRow(QStringLiteral("COM %1:").arg(number), editor);
    }

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("btOk"));
    buttons->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("Storno"));
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("btStorno"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(intro);
    layout->addLayout(form);
    if (available.empty())
        layout->addWidget(new QLabel(QStringLiteral("Systém nenabízí žádný sériový port."), this));
    layout->addWidget(buttons);
}

link::PortMap PortSettingsDialog::ports() const
{
    link::PortMap result = base_;
    const auto platform = link::PortMap::platformDefault();
    for (int number = kFirstListedPort; number <= kLastListedPort; ++number) {
        const QString text = editors_[slotOf(number)]->currentText().trimmed();
        if (!text.isEmpty()) {
            result.set(number, text.toStdString());
        } else if (const auto own = platform.entries().find(number); own != platform.entries().end()) {
            result.set(number, own->second);
        }
    }
    return result;
}

QComboBox* PortSettingsDialog::deviceEditor(int number) const
{
    if (number < kFirstListedPort || number > kLastListedPort)
        return nullptr;
    return editors_[slotOf(number)];
}

} // namespace rm8::shell
