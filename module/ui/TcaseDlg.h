// The Qt form of the TCASE dialog. Ui_TCaseDialog sets the widgets up inside
// the host dialog's widget, as generated form code does (object name
// "TCaseDialog", title "TCASE-change text case", five mode buttons, OK and
// Cancel); KVUI::TcaseDlg owns that set-up and reports the clicks as signals,
// which the host dialog wires to its handlers.
#pragma once

#include <QObject>

class QDialog;
class QHBoxLayout;
class QPushButton;
class QRadioButton;
class QVBoxLayout;

class Ui_TCaseDialog {
public:
    QVBoxLayout* mainLayout = nullptr;
    QRadioButton* radioSentenceCase = nullptr;
    QRadioButton* radioLowercase = nullptr;
    QRadioButton* radioUppercase = nullptr;
    QRadioButton* radioTitle = nullptr;
    QRadioButton* radioToggleCase = nullptr;
    QHBoxLayout* buttonLayout = nullptr;
    QPushButton* okButton = nullptr;
    QPushButton* cancelButton = nullptr;

    void setupUi(QDialog* dialog);
    void retranslateUi(QDialog* dialog);
};

namespace KVUI {

class TcaseDlg : public QObject {
    Q_OBJECT

public:
    // Builds the form into the dialog widget, which owns the widgets; the form
    // object itself belongs to whoever built it.
    explicit TcaseDlg(QDialog* dialog);

    const Ui_TCaseDialog& ui() const { return m_ui; }

signals:
    // 1 to 5: Sentence case, lowercase, UPPERCASE, Title, tOGGLE cASE.
    void radioClicked(int index);
    void okClicked();
    void cancelClicked();

private:
    Ui_TCaseDialog m_ui;
};

}  // namespace KVUI
