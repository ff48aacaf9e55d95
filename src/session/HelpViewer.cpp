#include "session/HelpViewer.h"
#include "session/Resources.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLineEdit>
#include <QListWidget>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>
#include <QRegularExpression>
#include <QSplitter>
#include <QTabWidget>
#include <QTextBrowser>
#include <QTextDocumentFragment>
#include <QToolBar>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <vector>

namespace tavrelle {

namespace {

constexpr int kPageRole = Qt::UserRole;
constexpr int kParentRole = Qt::UserRole + 1;

QString ReadText(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return {};
    return QString::fromUtf8(file.readAll());
}

}  // namespace

HelpBundle::HelpBundle(QString folder) : folder_(std::move(folder)) {
    if (folder_.isEmpty()) return;
    contents_ = ReadLinks(ReadText(QDir(folder_).filePath(kContentsPage)));
    keywords_ = ReadLinks(ReadText(QDir(folder_).filePath(kIndexPage)));
}

bool HelpBundle::Exists() const {
    return !folder_.isEmpty() && QFileInfo::exists(QDir(folder_).filePath(kContentsPage));
}

QUrl HelpBundle::PageUrl(const QString& page) const {
    const qsizetype hash = page.indexOf('#');
    QUrl url = QUrl::fromLocalFile(QDir(folder_).absoluteFilePath(page.left(hash)));
    if (hash >= 0) url.setFragment(page.mid(hash + 1));
    return url;
}

QUrl HelpBundle::TopicUrl(const std::string& topic) const {
    QString page = QString::fromStdString(topic);
    if (page.startsWith("::/")) page = page.mid(3);
    return PageUrl(page.isEmpty() ? QString(kContentsPage) : page);
}

QList<HelpLink> HelpBundle::ReadLinks(const QString& html) {
    static const QRegularExpression token(
        R"re(<(/?)(?:ul|ol)\b[^>]*>|<a\s[^>]*href\s*=\s*"([^"]*)"[^>]*>(.*?)</a>)re",
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    QList<HelpLink> links;
    int depth = -1;
    for (auto it = token.globalMatch(html); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        if (match.capturedStart(2) < 0) {
            depth += match.captured(1).isEmpty() ? 1 : -1;
            continue;
        }
        const QString page = match.captured(2);
        // Only links that stand in a list, and to pages of the bundle.
        if (depth < 0 || page.contains("://")) continue;
        const QString title =
            QTextDocumentFragment::fromHtml(match.captured(3)).toPlainText().simplified();
        links.push_back({title, page, depth});
    }
    return links;
}

HelpViewer::HelpViewer(QWidget* parent) : QMainWindow(parent) {
    LoadResources();
    setObjectName("HelpViewer");
    setWindowTitle("Tavrelle Help");
    setWindowIcon(QIcon(":/icons/tavrelle.svg"));

    Browser = new QTextBrowser(this);
    Browser->setOpenExternalLinks(true);
    ContentsTree = new QTreeWidget(this);
    ContentsTree->setHeaderHidden(true);
    IndexFilter = new QLineEdit(this);
    IndexFilter->setPlaceholderText("Type a keyword");
    IndexFilter->setClearButtonEnabled(true);
    IndexList = new QListWidget(this);
    auto* indexPage = new QWidget(this);
    auto* indexLayout = new QVBoxLayout(indexPage);
    indexLayout->setContentsMargins(4, 4, 4, 4);
    indexLayout->addWidget(IndexFilter);
    indexLayout->addWidget(IndexList);
    Tabs = new QTabWidget(this);
    Tabs->addTab(ContentsTree, "Contents");
    Tabs->addTab(indexPage, "Index");

    auto* splitter = new QSplitter(this);
    splitter->addWidget(Tabs);
    splitter->addWidget(Browser);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({290, 690});
    setCentralWidget(splitter);

    QToolBar* toolbar = addToolBar("Navigation");
    toolbar->setMovable(false);
    toolbar->setToolButtonStyle(Qt::ToolButtonTextOnly);
    BackAction = toolbar->addAction("< Back");
    ForwardAction = toolbar->addAction("Forward >");
    HomeAction = toolbar->addAction("Contents");
    toolbar->addSeparator();
    PrintAction = toolbar->addAction("Print...");
    BackAction->setShortcut(QKeySequence::Back);
    ForwardAction->setShortcut(QKeySequence::Forward);
    BackAction->setEnabled(false);
    ForwardAction->setEnabled(false);

    connect(BackAction, &QAction::triggered, Browser, &QTextBrowser::backward);
    connect(ForwardAction, &QAction::triggered, Browser, &QTextBrowser::forward);
    connect(HomeAction, &QAction::triggered, this, [this] {
        Tabs->setCurrentIndex(0);
        OpenPage(HelpBundle::kContentsPage);
    });
    connect(PrintAction, &QAction::triggered, this, &HelpViewer::Print);
    connect(Browser, &QTextBrowser::backwardAvailable, BackAction, &QAction::setEnabled);
    connect(Browser, &QTextBrowser::forwardAvailable, ForwardAction, &QAction::setEnabled);
    connect(Browser, &QTextBrowser::sourceChanged, this, &HelpViewer::MarkContents);
    connect(ContentsTree, &QTreeWidget::itemClicked, this,
            [this](QTreeWidgetItem* item) { OpenPage(item->data(0, kPageRole).toString()); });
    connect(ContentsTree, &QTreeWidget::itemActivated, this,
            [this](QTreeWidgetItem* item) { OpenPage(item->data(0, kPageRole).toString()); });
    connect(IndexList, &QListWidget::itemActivated, this,
            [this](QListWidgetItem* item) { OpenPage(item->data(kPageRole).toString()); });
    connect(IndexList, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { OpenPage(item->data(kPageRole).toString()); });
    connect(IndexFilter, &QLineEdit::textChanged, this, &HelpViewer::FilterIndex);
    connect(IndexFilter, &QLineEdit::returnPressed, this, [this] {
        for (int i = 0; i < IndexList->count(); ++i) {
            if (!IndexList->item(i)->isHidden()) {
                OpenPage(IndexList->item(i)->data(kPageRole).toString());
                return;
            }
        }
    });
    resize(980, 700);
}

void HelpViewer::Load(const QString& folder) {
    if (folder == bundle_.Folder() && bundle_.Exists()) return;
    bundle_ = HelpBundle(folder);
    Browser->setSearchPaths({folder});
    FillContents();
    FillIndex();
    Browser->clearHistory();
}

void HelpViewer::FillContents() {
    ContentsTree->clear();
    std::vector<QTreeWidgetItem*> parents;
    for (const HelpLink& link : bundle_.Contents()) {
        const auto depth = static_cast<std::size_t>(link.depth);
        parents.resize(std::min(parents.size(), depth));
        auto* item = parents.empty() ? new QTreeWidgetItem(ContentsTree)
                                     : new QTreeWidgetItem(parents.back());
        item->setText(0, link.title);
        item->setData(0, kPageRole, link.page);
        parents.push_back(item);
    }
    ContentsTree->expandAll();
}

void HelpViewer::FillIndex() {
    IndexList->clear();
    QString parent;
    for (const HelpLink& link : bundle_.Keywords()) {
        auto* item = new QListWidgetItem(QString(link.depth * 4, ' ') + link.title, IndexList);
        item->setData(kPageRole, link.page);
        if (link.depth == 0) parent = link.title;
        item->setData(kParentRole, link.depth == 0 ? QString() : parent);
    }
}

void HelpViewer::FilterIndex(const QString& text) {
    const QString wanted = text.trimmed();
    for (int i = 0; i < IndexList->count(); ++i) {
        QListWidgetItem* item = IndexList->item(i);
        const bool shown = wanted.isEmpty() || item->text().contains(wanted, Qt::CaseInsensitive) ||
                           item->data(kParentRole).toString().contains(wanted, Qt::CaseInsensitive);
        item->setHidden(!shown);
    }
}

void HelpViewer::OpenPage(const QString& page) {
    if (!page.isEmpty()) Browser->setSource(bundle_.PageUrl(page));
}

void HelpViewer::ShowHelp(const std::string& file, const std::string& topic, int command) {
    Load(QString::fromStdString(file));
    if (!bundle_.Exists()) {
        Browser->setHtml(
            QString("<h2>Tavrelle Help</h2><p>The help pages were not found in the folder "
                    "<b>%1</b>.</p><p>They are installed beside the program in a folder named "
                    "TavrelleHelp.</p>")
                .arg(QDir::toNativeSeparators(bundle_.Folder()).toHtmlEscaped()));
    } else if (command == 2) {
        Tabs->setCurrentIndex(1);
        Browser->setSource(bundle_.PageUrl(HelpBundle::kIndexPage));
        IndexFilter->setFocus();
    } else {
        Tabs->setCurrentIndex(0);
        Browser->setSource(bundle_.TopicUrl(topic));
    }
    show();
    if (isMinimized()) showNormal();
    raise();
    activateWindow();
}

QString HelpViewer::CurrentPage() const {
    return QFileInfo(Browser->source().toLocalFile()).fileName();
}

void HelpViewer::MarkContents(const QUrl& url) {
    const QString page = QFileInfo(url.toLocalFile()).fileName();
    for (QTreeWidgetItemIterator it(ContentsTree); *it; ++it) {
        const QString target = (*it)->data(0, kPageRole).toString().section('#', 0, 0);
        if (target.compare(page, Qt::CaseInsensitive) == 0) {
            ContentsTree->setCurrentItem(*it);
            return;
        }
    }
    ContentsTree->clearSelection();
}

void HelpViewer::Print() {
    QPrinter printer;
    QPrintDialog dialog(&printer, this);
    dialog.setWindowTitle("Print Topic");
    if (dialog.exec() == QDialog::Accepted) Browser->document()->print(&printer);
}

HelpViewer& SessionHelpViewer(QWidget* owner) {
    static QPointer<HelpViewer> viewer;
    if (!viewer) viewer = new HelpViewer(owner);
    return *viewer;
}

}  // namespace tavrelle
