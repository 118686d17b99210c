#pragma once

#include "UI/Design/ExportOptions.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;

namespace Vu::Design {

/// Asks how a file is to be exported. Shows what the file's format has any choice about, and how many
/// triangles come of it.
class ExportOptionsDialog : public QDialog
{
public:
    /// `options` are what is shown first, and receive what is chosen when the dialog is accepted. All outlive
    /// it.
    ExportOptionsDialog(Vs::Asset& asset, const Vs::Translator& translator, const std::wstring& path,
                        ExportOptions& options, QWidget* parent);

    void accept() override;

private:
    QComboBox* addList(QFormLayout* form, const char* name, const QString& label);
    QCheckBox* addCheck(QFormLayout* form, const char* name, const QString& label, bool on);
    void addLists(QFormLayout* form);
    void addChecks(QFormLayout* form);
    ExportOptions chosen() const;
    void showTriangles();

    Vs::Asset& m_asset;
    const Vs::Translator& m_translator;
    const Vs::TranslatorChoices m_choices;
    ExportOptions& m_options;
    QComboBox* m_fineness = nullptr;
    QComboBox* m_unit = nullptr;
    QComboBox* m_axis = nullptr;
    QLabel* m_triangles = nullptr;
    QCheckBox* m_selected = nullptr;
    QCheckBox* m_hidden = nullptr;
    QCheckBox* m_separate = nullptr;
    QCheckBox* m_combine = nullptr;
    QCheckBox* m_text = nullptr;
};

} // namespace Vu::Design
