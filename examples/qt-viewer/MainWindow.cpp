#include "MainWindow.h"

#include "SceneSource.h"
#include "SettingsPanel.h"

#include <QAction>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QKeySequence>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QSettings>
#include <QStatusBar>

#include <string>

namespace KesraQtViewer
{

namespace
{

const char* const kRecentKey = "recentFiles";

} // namespace

MainWindow::MainWindow(QWidget* parent) : QMainWindow(parent)
{
    m_view = new KesraQt::CSceneWidget;
    m_view->setObjectName("scene");
    setCentralWidget(m_view);
    auto* dock = new QDockWidget(tr("Settings"), this);
    dock->setObjectName("settings");
    m_panel = new SettingsPanel(*m_view, dock);
    dock->setWidget(m_panel);
    addDockWidget(Qt::RightDockWidgetArea, dock);
    BuildMenus();
    BuildStatusBar();
    connect(m_view, &KesraQt::CSceneWidget::hoveredValueChanged, this, &MainWindow::ShowHoveredValue);
}

void MainWindow::BuildMenus()
{
    QMenu* file = menuBar()->addMenu(tr("&File"));
    QAction* open = file->addAction(tr("&Open..."), this, &MainWindow::ChooseFile);
    open->setShortcut(QKeySequence::Open);
    m_recentMenu = file->addMenu(tr("Open &Recent"));
    m_recentMenu->setObjectName("recent");
    file->addAction(tr("Save &Snapshot..."), this, &MainWindow::SaveSnapshot);
    file->addSeparator();
    QAction* quit = file->addAction(tr("&Quit"), this, &QWidget::close);
    quit->setShortcut(QKeySequence::Quit);
    FillRecentMenu();
}

void MainWindow::BuildStatusBar()
{
    m_nodes = new QLabel;
    m_nodes->setObjectName("nodes");
    m_value = new QLabel;
    m_value->setObjectName("value");
    statusBar()->addWidget(m_nodes);
    statusBar()->addPermanentWidget(m_value);
}

bool MainWindow::OpenFile(const QString& path, QString& error)
{
    KesraViewer::SceneData data;
    std::string summary; // the terminal's line; the status bar counts the nodes
    std::string message;
    if (!KesraViewer::LoadScene(KesraViewer::SceneRequest{path.toStdString(), {}, 0.0}, data, summary, message))
    {
        error = QString::fromStdString(message);
        return false;
    }
    m_view->setStreamlines(std::move(data));
    const QString name = path.isEmpty() ? tr("Flow around a sphere") : QFileInfo(path).fileName();
    setWindowTitle(name + " - kesra-qt-viewer");
    ShowNodeCount();
    if (!path.isEmpty())
    {
        Remember(QFileInfo(path).absoluteFilePath());
    }
    return true;
}

void MainWindow::ChooseFile()
{
    const QString path = QFileDialog::getOpenFileName(
        this, tr("Open streamlines"), QString(),
        tr("Polydata (*.vtk *.vtp *.pvtp *.vtm);;All files (*)"));
    QString error;
    if (!path.isEmpty() && !OpenFile(path, error))
    {
        QMessageBox::warning(this, tr("Cannot open the file"), error);
    }
}

void MainWindow::SaveSnapshot()
{
    const QString path = QFileDialog::getSaveFileName(this, tr("Save snapshot"), "kesra-qt-viewer.png",
                                                      tr("PNG images (*.png)"));
    if (!path.isEmpty() && !m_view->snapshot().save(path, "PNG"))
    {
        QMessageBox::warning(this, tr("Cannot save the snapshot"), path);
    }
}

void MainWindow::ShowNodeCount()
{
    m_nodes->setText(tr("%1 nodes").arg(m_view->nodeCount()));
}

void MainWindow::ShowHoveredValue(bool found, double value)
{
    const QString name = QString::fromStdString(m_view->streamlines().valueName);
    m_value->setText(found ? name + " " + QString::number(value, 'g', 6) : QString());
}

QStringList MainWindow::RecentFiles() const
{
    return QSettings().value(kRecentKey).toStringList();
}

void MainWindow::Remember(const QString& path)
{
    QStringList files = RecentFiles();
    files.removeAll(path);
    files.prepend(path);
    while (files.size() > kRecentFiles)
    {
        files.removeLast();
    }
    QSettings().setValue(kRecentKey, files);
    FillRecentMenu();
}

void MainWindow::FillRecentMenu()
{
    m_recentMenu->clear();
    const QStringList files = RecentFiles();
    for (const QString& path : files)
    {
        m_recentMenu->addAction(QFileInfo(path).fileName(), this, [this, path] {
            QString error;
            if (!OpenFile(path, error))
            {
                QMessageBox::warning(this, tr("Cannot open the file"), error);
            }
        });
    }
    m_recentMenu->setEnabled(!files.isEmpty());
}

} // namespace KesraQtViewer
