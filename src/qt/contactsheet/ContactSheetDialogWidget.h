#pragma once
#include "base/Task.h"
#include "contactsheet/ContactSheetDialog.h"
#include <QDialog>
#include <QPointer>

class QFormLayout;

namespace pixelhain {

/// The dialog for one contact sheet, as a sheet of its parent's window.
class ContactSheetDialogWidget final : public QDialog {
public:
    ContactSheetDialogWidget(BrowserModel& model, ContactSheetExport& sheets, QWidget* parent);

    void accept() override;
    void reject() override;

private:
    void addOptions(QFormLayout& form);
    QLayout* makeButtons();

    ContactSheetDialog dialog_;
};

/// Shows the dialog over a window while the model says so.
class ContactSheetPresenter {
public:
    /// All must outlive it.
    ContactSheetPresenter(BrowserModel& model, ContactSheetExport& sheets, QWidget& window);
    ~ContactSheetPresenter();
    ContactSheetPresenter(ContactSheetPresenter const&) = delete;
    ContactSheetPresenter& operator=(ContactSheetPresenter const&) = delete;

private:
    void modelChanged();

    BrowserModel& model_;
    ContactSheetExport& sheets_;
    QWidget& window_;
    QPointer<ContactSheetDialogWidget> shown_;
    Observation observation_;
};

} // namespace pixelhain
