#include "SettingsPanel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>

#include <cfloat>
#include <iterator>

namespace KesraQtViewer
{

namespace
{

// As the palettes read in a list.
const char* PaletteLabel(KesraBackend::Palette palette)
{
    switch (palette)
    {
    case KesraBackend::Palette::BlueRed: return "Blue to red";
    case KesraBackend::Palette::Gray: return "Gray";
    case KesraBackend::Palette::GreenRed: return "Green to red";
    case KesraBackend::Palette::Viridis: return "Viridis";
    case KesraBackend::Palette::Cividis: return "Cividis";
    case KesraBackend::Palette::CoolWarm: return "Cool to warm";
    case KesraBackend::Palette::Turbo: return "Turbo";
    default: return "Red to blue";
    }
}

QDoubleSpinBox* RangeBox(const char* name)
{
    auto* box = new QDoubleSpinBox;
    box->setObjectName(name);
    box->setRange(-DBL_MAX, DBL_MAX);
    box->setDecimals(4);
    // The range applies when the number is complete, not at every digit.
    box->setKeyboardTracking(false);
    return box;
}

} // namespace

SettingsPanel::SettingsPanel(KesraQt::CSceneWidget& view, QWidget* parent) : QWidget(parent), m_view(view)
{
    setLayout(new QVBoxLayout);
    AddLegendControls();
    AddViewButtons();
    static_cast<QVBoxLayout*>(layout())->addStretch();
    connect(&m_view, &KesraQt::CSceneWidget::legendChanged, this, &SettingsPanel::ShowLegend);
    ShowLegend();
}

void SettingsPanel::AddLegendControls()
{
    auto* group = new QGroupBox(tr("Legend"));
    auto* form = new QFormLayout(group);
    m_palette = new QComboBox;
    m_palette->setObjectName("palette");
    for (const KesraBackend::NamedPalette& entry : KesraBackend::kPalettes)
    {
        m_palette->addItem(tr(PaletteLabel(entry.value)), static_cast<int>(entry.value));
    }
    connect(m_palette, &QComboBox::currentIndexChanged, this, [this](int index) {
        m_view.setColorPalette(static_cast<KesraBackend::Palette>(m_palette->itemData(index).toInt()));
    });
    m_banded = new QCheckBox(tr("Banded"));
    m_banded->setObjectName("banded");
    connect(m_banded, &QCheckBox::toggled, &m_view, &KesraQt::CSceneWidget::setBanded);
    m_blocks = new QSpinBox;
    m_blocks->setObjectName("blocks");
    m_blocks->setRange(2, 30);
    connect(m_blocks, &QSpinBox::valueChanged, &m_view, &KesraQt::CSceneWidget::setBlockCount);
    m_inverse = new QCheckBox(tr("Inverse"));
    m_inverse->setObjectName("inverse");
    connect(m_inverse, &QCheckBox::toggled, &m_view, &KesraQt::CSceneWidget::setInverse);
    m_minimum = RangeBox("minimum");
    m_maximum = RangeBox("maximum");
    connect(m_minimum, &QDoubleSpinBox::valueChanged, this, &SettingsPanel::ApplyRange);
    connect(m_maximum, &QDoubleSpinBox::valueChanged, this, &SettingsPanel::ApplyRange);
    auto* dataRange = new QPushButton(tr("Data range"));
    dataRange->setObjectName("dataRange");
    connect(dataRange, &QPushButton::clicked, &m_view, &KesraQt::CSceneWidget::resetValueRange);
    form->addRow(tr("Palette"), m_palette);
    form->addRow(m_banded);
    form->addRow(tr("Blocks"), m_blocks);
    form->addRow(m_inverse);
    form->addRow(tr("Minimum"), m_minimum);
    form->addRow(tr("Maximum"), m_maximum);
    form->addRow(dataRange);
    layout()->addWidget(group);
}

void SettingsPanel::AddViewButtons()
{
    auto* group = new QGroupBox(tr("View"));
    auto* grid = new QGridLayout(group);
    int cell = 0;
    for (const KesraBackend::NamedView& entry : KesraBackend::kViews)
    {
        auto* button = new QPushButton(QString::fromLatin1(entry.name));
        button->setObjectName(QString("view-") + entry.name);
        const KesraBackend::View view = entry.value;
        connect(button, &QPushButton::clicked, this, [this, view] { m_view.setView(view); });
        grid->addWidget(button, cell / 2, cell % 2);
        ++cell;
    }
    auto* fit = new QPushButton(tr("Zoom all"));
    fit->setObjectName("zoomAll");
    connect(fit, &QPushButton::clicked, &m_view, &KesraQt::CSceneWidget::zoomAll);
    grid->addWidget(fit, cell / 2, cell % 2);
    layout()->addWidget(group);
}

void SettingsPanel::ApplyRange()
{
    // A pair the widget refuses (minimum not below maximum) leaves the legend
    // as it is; the boxes then show the legend again.
    m_view.setValueRange(m_minimum->value(), m_maximum->value());
    ShowLegend();
}

void SettingsPanel::ShowLegend()
{
    const QSignalBlocker paletteBlock(m_palette);
    const QSignalBlocker bandedBlock(m_banded);
    const QSignalBlocker blocksBlock(m_blocks);
    const QSignalBlocker inverseBlock(m_inverse);
    const QSignalBlocker minimumBlock(m_minimum);
    const QSignalBlocker maximumBlock(m_maximum);
    m_palette->setCurrentIndex(m_palette->findData(static_cast<int>(m_view.colorPalette())));
    m_banded->setChecked(m_view.isBanded());
    m_blocks->setValue(m_view.blockCount());
    m_blocks->setEnabled(m_view.isBanded());
    m_inverse->setChecked(m_view.isInverse());
    m_minimum->setValue(m_view.rangeMinimum());
    m_maximum->setValue(m_view.rangeMaximum());
}

} // namespace KesraQtViewer
