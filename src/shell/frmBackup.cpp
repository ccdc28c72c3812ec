#include "frmBackup.h"

#include "Backup.h"
#include "Hourglass.h"
#include "InputBehaviours.h"
#include "MessageService.h"
#include "QtMessageService.h"
#include "ScreenRegistry.h"
#include "Session.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QFileSystemModel>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QStorageInfo>
#include <QTreeView>
#include <QVBoxLayout>

namespace {

// The small window that shows the archive being written: its path and a bar.
class ArchiveWindow : public QWidget {
public:
    explicit ArchiveWindow(const QString& path) : QWidget(nullptr, Qt::Tool | Qt::WindowStaysOnTopHint) {
        setWindowTitle(kArchiveName);
        auto* box = new QVBoxLayout(this);
        box->addWidget(new QLabel(path, this));
        bar = new QProgressBar(this);
        bar->setRange(0, 1000);
        box->addWidget(bar);
        resize(420, 80);
    }
    QProgressBar* bar = nullptr;
};

} // namespace

frmBackup::frmBackup(QWidget* parent) : QWidget(parent) {
    setObjectName("frmBackup");
    setWindowTitle("Backup Orvel Register Data");
    auto* top = new QVBoxLayout(this);
    Drive1 = new QComboBox(this);
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes())
        if (volume.isValid() && volume.isReady())
            Drive1->addItem(volume.rootPath());
    m_dirs = new QFileSystemModel(this);
    m_dirs->setFilter(QDir::AllDirs | QDir::NoDotAndDotDot);
    m_dirs->setRootPath("/");
    Dir1 = new QTreeView(this);
    Dir1->setModel(m_dirs);
    for (int c = 1; c < m_dirs->columnCount(); ++c)
        Dir1->hideColumn(c);
    Dir1->header()->hide();
    chk[0] = new QCheckBox("Send to second destination", this);
    chk[1] = new QCheckBox("Backup as multiple files", this);
    cmd[0] = new QPushButton("&Backup", this);
    cmd[1] = new QPushButton("&Cancel", this);
    top->addWidget(Drive1);
    top->addWidget(Dir1, 1);
    top->addWidget(chk[0]);
    top->addWidget(chk[1]);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmd[0]);
    buttons->addWidget(cmd[1]);
    top->addLayout(buttons);
    AttachEnterAsTab(Drive1);
    AttachEnterAsTab(Dir1);
    connect(Drive1, &QComboBox::currentIndexChanged, this, [this] { Drive1_Change(); });
    connect(cmd[0], &QPushButton::clicked, this, [this] { cmd_Click(0); });
    connect(cmd[1], &QPushButton::clicked, this, [this] { cmd_Click(1); });
    resize(460, 520);
    Form_Load();
}

void frmBackup::Form_Load() {
    const Session& s = CurrentSession();
    m_storeFiles = QDir(s.DataPath).entryList({"inven*.db"}, QDir::Files).size();
    QDir().mkpath(s.DataPath + "Backup"); // errors ignored
    const QString folder = QDir::cleanPath(s.DataPath + "Backup");
    int best = -1;
    for (int i = 0; i < Drive1->count(); ++i) {
        const QString root = Drive1->itemText(i);
        if (folder.startsWith(root) && (best < 0 || root.size() > Drive1->itemText(best).size()))
            best = i;
    }
    if (best >= 0)
        Drive1->setCurrentIndex(best);
    Drive1_Change();
    SetDir1Path(folder);
}

void frmBackup::Drive1_Change() {
    const QString drive = Drive1->currentText();
    Dir1->setRootIndex(m_dirs->index(drive));
    // The two check boxes serve diskette drives only.
    const bool diskette =
        drive.compare("a:", Qt::CaseInsensitive) == 0 || drive.compare("b:", Qt::CaseInsensitive) == 0;
    chk[0]->setEnabled(diskette);
    chk[1]->setEnabled(diskette);
}

QString frmBackup::Dir1Path() const {
    return m_dirs->filePath(Dir1->currentIndex());
}

void frmBackup::SetDir1Path(const QString& path) {
    const QModelIndex index = m_dirs->index(path);
    Dir1->setCurrentIndex(index);
    Dir1->scrollTo(index);
}

void frmBackup::cmd_Click(int index) {
    if (index == 1) {
        close();
        return;
    }
    Hourglass hourglass;
    QCoreApplication::processEvents();
    BackupFolder = Dir1Path();
    m_sendToSecond = chk[0]->isChecked();
    m_multipleFiles = chk[1]->isChecked();
    hide();
    QCoreApplication::processEvents();
    Session& s = CurrentSession();
    RepairStore(s);
    BackupStore();
    try {
        ReopenStore(s);
    } catch (const NumberedError& e) {
        EndRunWithError(e.number(), e.description());
        return;
    }
    hourglass.restore();
    close();
}

void frmBackup::BackupStore() {
    Session& s = CurrentSession();
    try {
        ArchiveWindow window(QDir(BackupFolder).filePath(kArchiveName));
        window.show();
        const BackupResult result = ::BackupStore(s, BackupFolder, [&window](qint64 done, qint64 total) {
            window.bar->setValue(total > 0 ? static_cast<int>(done * 1000 / total) : 1000);
            QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        });
        if (result.outcome == BackupOutcome::StoreHeld)
            MsgBox(kStoreHeldMessage);
    } catch (const NumberedError& e) {
        MsgBox("ERROR (" + QString::number(e.number()) + ") " + e.description(), MsgButtons::Ok, MsgIcon::Critical,
               "ERROR");
    }
}

void RegisterBackupScreen() {
    RegisterScreen("frmBackup", [](QWidget* parent) -> QWidget* { return new frmBackup(parent); });
}
