// The main window of kesra-qt-viewer: the scene widget in the centre, the
// file opened from the File menu (or given on the command line) through the
// viewer's own reader, the recent files, a dock with the legend's settings
// and the standard views, and a status bar with the node count and the value
// under the cursor.
#pragma once

#include "qt/SceneWidget.h"

#include <QMainWindow>
#include <QStringList>

class QLabel;
class QMenu;

namespace KesraQtViewer
{

class SettingsPanel;

class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    // How many files the File menu remembers.
    static constexpr int kRecentFiles = 8;

    explicit MainWindow(QWidget* parent = nullptr);

    // The flow past a sphere for an empty path, else the file; false, with
    // the scene unchanged and error set (the file, the line, what is wrong),
    // when it cannot be shown. A file shown goes to the top of the recent
    // files.
    bool OpenFile(const QString& path, QString& error);

    KesraQt::CSceneWidget& View() { return *m_view; }
    QStringList RecentFiles() const;

private Q_SLOTS:
    void ChooseFile();
    void SaveSnapshot();
    void ShowHoveredValue(bool found, double value);

private:
    void BuildMenus();
    void BuildStatusBar();
    void Remember(const QString& path);
    void FillRecentMenu();
    void ShowNodeCount();

    KesraQt::CSceneWidget* m_view = nullptr;
    SettingsPanel* m_panel = nullptr;
    QMenu* m_recentMenu = nullptr;
    QLabel* m_nodes = nullptr;
    QLabel* m_value = nullptr;
};

} // namespace KesraQtViewer
