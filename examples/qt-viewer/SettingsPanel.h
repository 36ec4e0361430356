// The dock of kesra-qt-viewer: the legend's settings (palette, banded and its
// block count, inverse, range) and the standard views, each applied to the
// widget at once. The panel follows the widget too: a key that changes the
// legend in the view shows in the controls.
#pragma once

#include "qt/SceneWidget.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QSpinBox;

namespace KesraQtViewer
{

class SettingsPanel : public QWidget
{
    Q_OBJECT

public:
    // view is not owned and must outlive the panel.
    explicit SettingsPanel(KesraQt::CSceneWidget& view, QWidget* parent = nullptr);

public Q_SLOTS:
    // The controls from the widget's legend, without applying them back.
    void ShowLegend();

private:
    void AddLegendControls();
    void AddViewButtons();
    void ApplyRange();

    KesraQt::CSceneWidget& m_view;
    QComboBox* m_palette = nullptr;
    QCheckBox* m_banded = nullptr;
    QSpinBox* m_blocks = nullptr;
    QCheckBox* m_inverse = nullptr;
    QDoubleSpinBox* m_minimum = nullptr;
    QDoubleSpinBox* m_maximum = nullptr;
};

} // namespace KesraQtViewer
