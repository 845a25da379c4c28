// The TCASE form: its widgets, their object names (what scripts name them by)
// and labels, and the signals that report their clicks.
#include "ui/TcaseDlg.h"

#include <QDialog>
#include <QHBoxLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

void Ui_TCaseDialog::setupUi(QDialog* dialog) {
    if (dialog->objectName().isEmpty()) dialog->setObjectName(QStringLiteral("TCaseDialog"));
    mainLayout = new QVBoxLayout(dialog);
    mainLayout->setObjectName(QStringLiteral("mainLayout"));
    auto addRadio = [&](const char* name) {
        auto* radio = new QRadioButton(dialog);
        radio->setObjectName(QString::fromLatin1(name));
        mainLayout->addWidget(radio);
        return radio;
    };
    radioSentenceCase = addRadio("radioSentenceCase");
    radioLowercase = addRadio("radioLowercase");
    radioUppercase = addRadio("radioUppercase");
    radioTitle = addRadio("radioTitle");
    radioToggleCase = addRadio("radioToggleCase");

    buttonLayout = new QHBoxLayout();
    buttonLayout->setObjectName(QStringLiteral("buttonLayout"));
    buttonLayout->addStretch();
    okButton = new QPushButton(dialog);
    okButton->setObjectName(QStringLiteral("okButton"));
    okButton->setDefault(true);
    buttonLayout->addWidget(okButton);
    cancelButton = new QPushButton(dialog);
    cancelButton->setObjectName(QStringLiteral("cancelButton"));
    buttonLayout->addWidget(cancelButton);
    mainLayout->addLayout(buttonLayout);

    retranslateUi(dialog);
}

void Ui_TCaseDialog::retranslateUi(QDialog* dialog) {
    dialog->setWindowTitle(QStringLiteral("TCASE-change text case"));
    radioSentenceCase->setText(QStringLiteral("&Sentence case"));
    radioLowercase->setText(QStringLiteral("&lowercase"));
    radioUppercase->setText(QStringLiteral("&UPPERCASE"));
    radioTitle->setText(QStringLiteral("&Title"));
    radioToggleCase->setText(QStringLiteral("tO&GGLE cASE"));
    okButton->setText(QStringLiteral("&OK"));
    cancelButton->setText(QStringLiteral("&Cancel"));
}

namespace KVUI {

TcaseDlg::TcaseDlg(QDialog* dialog) {
    m_ui.setupUi(dialog);
    QRadioButton* const radios[] = {m_ui.radioSentenceCase, m_ui.radioLowercase, m_ui.radioUppercase, m_ui.radioTitle,
                                    m_ui.radioToggleCase};
    for (int index = 1; index <= 5; ++index) {
        connect(radios[index - 1], &QRadioButton::clicked, this, [this, index] { emit radioClicked(index); });
    }
    connect(m_ui.okButton, &QPushButton::clicked, this, &TcaseDlg::okClicked);
    connect(m_ui.cancelButton, &QPushButton::clicked, this, &TcaseDlg::cancelClicked);
}

}  // namespace KVUI
