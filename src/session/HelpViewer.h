#pragma once

#include <QList>
#include <QMainWindow>
#include <QString>
#include <QUrl>
#include <string>

class QAction;
class QLineEdit;
class QListWidget;
class QTabWidget;
class QTextBrowser;
class QTreeWidget;

namespace tavrelle {

// One link of the help bundle's contents or index: its title, the page (with an anchor, if any)
// and its depth in the list.
struct HelpLink {
    QString title;
    QString page;
    int depth = 0;
};

// The help bundle: a folder of HTML pages. "index.html" holds the contents and "Keywords.htm"
// the index, each as nested lists of links, so that both read as pages in any browser too.
class HelpBundle {
public:
    static constexpr const char* kContentsPage = "index.html";
    static constexpr const char* kIndexPage = "Keywords.htm";

    explicit HelpBundle(QString folder = {});

    const QString& Folder() const { return folder_; }
    bool Exists() const;
    // The page of a topic: "::/Name.htm" is Name.htm in the folder; no topic, the contents.
    QUrl TopicUrl(const std::string& topic) const;
    QUrl PageUrl(const QString& page) const;
    const QList<HelpLink>& Contents() const { return contents_; }
    const QList<HelpLink>& Keywords() const { return keywords_; }

    // The links of a page's nested lists, in order, with the depth of their list.
    static QList<HelpLink> ReadLinks(const QString& html);

private:
    QString folder_;
    QList<HelpLink> contents_;
    QList<HelpLink> keywords_;
};

// Tavrelle's help viewer: contents and index beside the page, back and forward, print.
class HelpViewer : public QMainWindow {
    Q_OBJECT
public:
    explicit HelpViewer(QWidget* parent = nullptr);

    // Opens the bundle `file` at `topic`: command 1 a topic, or the contents without one;
    // command 2 the index. Brings the window to the front.
    void ShowHelp(const std::string& file, const std::string& topic, int command);
    // The file name of the page on show ("NullAllelesAL.htm").
    QString CurrentPage() const;
    const HelpBundle& Bundle() const { return bundle_; }

    QTabWidget* Tabs;
    QTreeWidget* ContentsTree;
    QLineEdit* IndexFilter;
    QListWidget* IndexList;
    QTextBrowser* Browser;
    QAction *BackAction, *ForwardAction, *HomeAction, *PrintAction;

private:
    void Load(const QString& folder);
    void FillContents();
    void FillIndex();
    void FilterIndex(const QString& text);
    void OpenPage(const QString& page);
    void MarkContents(const QUrl& url);
    void Print();

    HelpBundle bundle_;
};

// The session's one help viewer, made on first use as a window owned by `owner` (it goes with
// its owner); later calls return the same window while it lives.
HelpViewer& SessionHelpViewer(QWidget* owner);

}  // namespace tavrelle
