// tavrelle-make-guide OUTPUT.pdf CHAPTERS.txt [VERSION]
//
// Renders Tavrelle's user guide to an A4 PDF: the pages that CHAPTERS.txt lists, in order, after
// a cover and a table of contents with page numbers. Each chapter starts on a new page and its
// first <h1> is its entry in the contents. Lines of CHAPTERS.txt, paths relative to it:
//     style PATH      the style sheet of the pages
//     cover PATH      the cover page, where @VERSION@ stands for VERSION
//     chapter PATH    the next chapter
// Links between the pages become plain text; images are scaled to the width of the page.
// Needs no display: run it with QT_QPA_PLATFORM=offscreen.
#include <QAbstractTextDocumentLayout>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QImageReader>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextStream>
#include <QUrl>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

// A4 at the resolution of the document's own units, so that nothing needs scaling.
constexpr int kDpi = 96;
constexpr qreal kPageWidth = 210.0 / 25.4 * kDpi;
constexpr qreal kPageHeight = 297.0 / 25.4 * kDpi;
constexpr qreal kSideMargin = 20.0 / 25.4 * kDpi;
constexpr qreal kTopMargin = 18.0 / 25.4 * kDpi;
constexpr qreal kBottomMargin = 22.0 / 25.4 * kDpi;
constexpr qreal kTextWidth = kPageWidth - 2 * kSideMargin;

struct Chapter {
    QString title;
    QString body;
    int page = 0;
};

QString ReadText(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "tavrelle-make-guide: cannot read %s\n", qPrintable(path));
        std::exit(1);
    }
    return QString::fromUtf8(file.readAll());
}

QString PlainText(const QString& html) {
    QTextDocument text;
    text.setHtml(html);
    return text.toPlainText().simplified();
}

// The body of a page, with its images made absolute and no wider than the text, and its links
// to other pages turned into plain text.
QString Body(const QString& path) {
    const QString html = ReadText(path);
    static const QRegularExpression bodyTag(
        R"re(<body[^>]*>(.*)</body>)re",
        QRegularExpression::DotMatchesEverythingOption | QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = bodyTag.match(html);
    QString body = match.hasMatch() ? match.captured(1) : html;

    static const QRegularExpression image(R"re(<img\s([^>]*?)src="([^"]+)"([^>]*)>)re",
                                          QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression size(R"re(\s(width|height)="[^"]*")re",
                                         QRegularExpression::CaseInsensitiveOption);
    const QDir folder = QFileInfo(path).dir();
    QString result;
    qsizetype from = 0;
    for (auto it = image.globalMatch(body); it.hasNext();) {
        const QRegularExpressionMatch img = it.next();
        result += body.mid(from, img.capturedStart() - from);
        from = img.capturedEnd();
        const QString file = folder.absoluteFilePath(img.captured(2));
        QSize natural = QImageReader(file).size();
        if (!natural.isValid()) {
            std::fprintf(stderr, "tavrelle-make-guide: cannot read the image %s\n",
                         qPrintable(file));
            std::exit(1);
        }
        QString attributes = img.captured(1) + img.captured(3);
        static const QRegularExpression widthAttribute(R"re(width="(\d+)")re");
        const QRegularExpressionMatch given = widthAttribute.match(attributes);
        qreal width = given.hasMatch() ? given.captured(1).toDouble() : natural.width();
        width = std::min(width, kTextWidth);
        const qreal height = width * natural.height() / natural.width();
        attributes.replace(size, "");
        result += QString(R"re(<img %1 src="%2" width="%3" height="%4">)re")
                      .arg(attributes.trimmed(), QUrl::fromLocalFile(file).toString())
                      .arg(std::lround(width))
                      .arg(std::lround(height));
    }
    result += body.mid(from);

    static const QRegularExpression pageLink(R"re(<a\s+href="(?!https?:|mailto:)[^"]*")re",
                                             QRegularExpression::CaseInsensitiveOption);
    result.replace(pageLink, "<a");
    return result;
}

QString Title(const QString& body) {
    static const QRegularExpression heading(
        R"re(<h1[^>]*>(.*?)</h1>)re",
        QRegularExpression::DotMatchesEverythingOption | QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = heading.match(body);
    return match.hasMatch() ? PlainText(match.captured(1)) : QString();
}

QString Html(const QString& cover, const std::vector<Chapter>& chapters) {
    QString html = "<html><body>" + cover;
    html +=
        R"re(<h2 style="page-break-before: always">Contents</h2><table class="toc" width="100%">)re";
    for (const Chapter& chapter : chapters)
        html += QString(R"re(<tr><td>%1</td><td align="right">%2</td></tr>)re")
                    .arg(chapter.title.toHtmlEscaped())
                    .arg(chapter.page);
    html += "</table>";
    for (const Chapter& chapter : chapters) {
        QString body = chapter.body;
        body.replace(QRegularExpression("<h1", QRegularExpression::CaseInsensitiveOption),
                     R"re(<h1 style="page-break-before: always")re");
        html += body;
    }
    return html + "</body></html>";
}

void Layout(QTextDocument& document, const QString& html, const QString& style) {
    document.setDefaultStyleSheet(style);
    document.setHtml(html);
    QTextFrameFormat frame = document.rootFrame()->frameFormat();
    frame.setLeftMargin(kSideMargin);
    frame.setRightMargin(kSideMargin);
    frame.setTopMargin(kTopMargin);
    frame.setBottomMargin(kBottomMargin);
    document.rootFrame()->setFrameFormat(frame);
    document.setPageSize(QSizeF(kPageWidth, kPageHeight));
}

// The page of each chapter's heading: the first-level headings after the contents, in order.
std::vector<int> ChapterPages(QTextDocument& document) {
    std::vector<int> pages;
    QAbstractTextDocumentLayout* layout = document.documentLayout();
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() != 1) continue;
        const qreal top = layout->blockBoundingRect(block).top();
        pages.push_back(static_cast<int>(top / kPageHeight) + 1);
    }
    return pages;
}

}  // namespace

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    if (argc != 3 && argc != 4) {
        std::fprintf(stderr, "usage: tavrelle-make-guide OUTPUT.pdf CHAPTERS.txt [VERSION]\n");
        return 2;
    }
    const QString version = argc == 4 ? QString::fromLocal8Bit(argv[3]) : QString();
    const QString output = QString::fromLocal8Bit(argv[1]);
    const QString list = QString::fromLocal8Bit(argv[2]);
    const QDir folder = QFileInfo(list).dir();

    QString style, cover;
    std::vector<Chapter> chapters;
    QString text = ReadText(list);
    QTextStream lines(&text);
    while (!lines.atEnd()) {
        const QString line = lines.readLine().trimmed();
        if (line.isEmpty() || line.startsWith('#')) continue;
        const QString kind = line.section(' ', 0, 0);
        const QString path = folder.absoluteFilePath(line.section(' ', 1).trimmed());
        if (kind == "style") {
            style = ReadText(path);
        } else if (kind == "cover") {
            cover = Body(path).replace("@VERSION@", version);
        } else if (kind == "chapter") {
            Chapter chapter;
            chapter.body = Body(path);
            chapter.title = Title(chapter.body);
            chapters.push_back(chapter);
        } else {
            std::fprintf(stderr, "tavrelle-make-guide: unknown line '%s'\n", qPrintable(line));
            return 2;
        }
    }

    // Page numbers in the contents may move the chapters; settle them.
    QTextDocument document;
    document.setDefaultFont(QFont("DejaVu Sans", 10));
    for (int pass = 0; pass < 4; ++pass) {
        Layout(document, Html(cover, chapters), style);
        const std::vector<int> pages = ChapterPages(document);
        if (pages.size() != chapters.size()) {
            std::fprintf(stderr, "tavrelle-make-guide: a chapter lacks its <h1> heading\n");
            return 1;
        }
        bool settled = true;
        for (std::size_t i = 0; i < pages.size(); ++i) {
            settled = settled && chapters[i].page == pages[i];
            chapters[i].page = pages[i];
        }
        if (settled) break;
    }

    const int pageCount = document.pageCount();
    const QFont footerFont("DejaVu Sans", 8);
    auto paintPage = [&](QPainter& painter, int page) {
        painter.save();
        painter.translate(0, -page * kPageHeight);
        const QRectF clip(0, page * kPageHeight, kPageWidth, kPageHeight);
        painter.setClipRect(clip);
        document.drawContents(&painter, clip);
        painter.restore();
        if (page == 0) return;  // the cover carries no footer
        painter.setFont(footerFont);
        painter.setPen(QColor(0x55, 0x66, 0x77));
        const QRectF footer(kSideMargin, kPageHeight - kBottomMargin + 18, kTextWidth, 20);
        painter.drawText(footer, Qt::AlignLeft | Qt::AlignVCenter, "Tavrelle User Guide");
        painter.drawText(footer, Qt::AlignRight | Qt::AlignVCenter, QString::number(page + 1));
    };

    // Pictures of the pages, for looking at them without a PDF reader.
    const QString pictures = qEnvironmentVariable("TAVRELLE_GUIDE_PAGES");
    if (!pictures.isEmpty()) {
        QDir().mkpath(pictures);
        for (int page = 0; page < pageCount; ++page) {
            QImage image(QSize(static_cast<int>(kPageWidth), static_cast<int>(kPageHeight)),
                         QImage::Format_RGB32);
            image.fill(Qt::white);
            QPainter painter(&image);
            paintPage(painter, page);
            painter.end();
            image.save(QString("%1/page-%2.png").arg(pictures).arg(page + 1, 2, 10, QChar('0')));
        }
    }

    QPdfWriter writer(output);
    writer.setResolution(kDpi);
    writer.setPageSize(QPageSize(QPageSize::A4));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    writer.setTitle("Tavrelle User Guide");
    writer.setCreator("tavrelle-make-guide");
    QPainter painter(&writer);
    if (!painter.isActive()) {
        std::fprintf(stderr, "tavrelle-make-guide: cannot write %s\n", qPrintable(output));
        return 1;
    }
    for (int page = 0; page < pageCount; ++page) {
        if (page > 0) writer.newPage();
        paintPage(painter, page);
    }
    painter.end();
    return 0;
}
