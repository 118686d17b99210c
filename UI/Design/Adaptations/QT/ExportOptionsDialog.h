#pragma once

#include "UI/Design/ExportOptions.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;

namespace Vu::Design {

/// Asks how a file is to be exported. Shows the options that the file's format supports, and the resulting
/// number of triangles.
class ExportOptionsDialog : public QDialog
{
public:
    /// `options` are the initial values, and receive the choices when the dialog is accepted. All of them
    /// outlive it.
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
