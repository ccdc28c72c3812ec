#pragma once
// The backup screen: packs the store into "Inven.rar" in a folder the user picks, after the repair step.

#include <QString>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QFileSystemModel;
class QLabel;
class QProgressBar;
class QPushButton;
class QTreeView;

class frmBackup : public QWidget {
    Q_OBJECT
public:
    explicit frmBackup(QWidget* parent = nullptr);

    void Drive1_Change();
    void cmd_Click(int index);
    void BackupStore();

    QString Dir1Path() const;
    void SetDir1Path(const QString& path);

    QComboBox* Drive1 = nullptr;
    QTreeView* Dir1 = nullptr;
    QCheckBox* chk[2] = {};
    QPushButton* cmd[2] = {};

    int StoreFilesFound() const { return m_storeFiles; }
    QString BackupFolder;

private:
    void Form_Load();

    QFileSystemModel* m_dirs = nullptr;
    int m_storeFiles = 0;
    bool m_sendToSecond = false;
    bool m_multipleFiles = false;
};

// Registered by the shell with its other screens.
void RegisterBackupScreen();
