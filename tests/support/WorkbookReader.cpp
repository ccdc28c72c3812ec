#include "WorkbookReader.h"

#include <QDate>

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <QXmlStreamReader>
#include <array>
#include <cmath>
#include <memory>
#include <zip.h>

namespace {

// A small element tree: enough to walk the parts of a workbook by local names.
struct Node {
    QString name;
    QHash<QString, QString> attrs; // by local name ("r:id" becomes "id")
    QString text;
    std::vector<Node> children;

    const Node* child(const QString& n) const {
        for (const auto& c : children)
            if (c.name == n)
                return &c;
        return nullptr;
    }
    std::vector<const Node*> all(const QString& n) const {
        std::vector<const Node*> out;
        for (const auto& c : children)
            if (c.name == n)
                out.push_back(&c);
        return out;
    }
    // The first descendant of that name, depth first.
    const Node* find(const QString& n) const {
        for (const auto& c : children) {
            if (c.name == n)
                return &c;
            if (const Node* d = c.find(n))
                return d;
        }
        return nullptr;
    }
    void findAll(const QString& n, std::vector<const Node*>& out) const {
        for (const auto& c : children) {
            if (c.name == n)
                out.push_back(&c);
            c.findAll(n, out);
        }
    }
    QString attr(const QString& n) const { return attrs.value(n); }
};

bool Parse(const QByteArray& xml, Node& root) {
    QXmlStreamReader r(xml);
    std::vector<Node*> stack;
    root = Node{};
    root.name = QStringLiteral("#document");
    stack.push_back(&root);
    while (!r.atEnd()) {
        r.readNext();
        if (r.isStartElement()) {
            Node n;
            n.name = r.name().toString();
            for (const auto& a : r.attributes())
                n.attrs.insert(a.name().toString(), a.value().toString());
            stack.back()->children.push_back(std::move(n));
            stack.push_back(&stack.back()->children.back());
        } else if (r.isEndElement()) {
            stack.pop_back();
        } else if (r.isCharacters()) {
            stack.back()->text += r.text();
        }
    }
    return !r.hasError();
}

class Zip {
public:
    explicit Zip(const QString& path) {
        int err = 0;
        m_zip = zip_open(path.toLocal8Bit().constData(), ZIP_RDONLY, &err);
    }
    ~Zip() {
        if (m_zip)
            zip_discard(m_zip);
    }
    bool ok() const { return m_zip != nullptr; }
    std::optional<QByteArray> read(const QString& name) const {
        zip_stat_t st;
        zip_stat_init(&st);
        const QByteArray n = name.toUtf8();
        if (zip_stat(m_zip, n.constData(), 0, &st) != 0)
            return std::nullopt;
        zip_file_t* f = zip_fopen(m_zip, n.constData(), 0);
        if (!f)
            return std::nullopt;
        QByteArray data(static_cast<qsizetype>(st.size), Qt::Uninitialized);
        const zip_int64_t got = zip_fread(f, data.data(), st.size);
        zip_fclose(f);
        if (got != static_cast<zip_int64_t>(st.size))
            return std::nullopt;
        return data;
    }

private:
    zip_t* m_zip = nullptr;
};

// "xl/worksheets" + "../drawings/drawing1.xml" -> "xl/drawings/drawing1.xml"
QString Resolve(const QString& baseDir, const QString& target) {
    if (target.startsWith('/'))
        return target.mid(1);
    QStringList parts = baseDir.split('/', Qt::SkipEmptyParts);
    for (const QString& p : target.split('/')) {
        if (p == QLatin1String(".."))
            parts.removeLast();
        else if (p != QLatin1String("."))
            parts << p;
    }
    return parts.join('/');
}

// The file stores a column's width with five pixels of padding in units of a 7-pixel digit.
double CharactersOfWidth(double stored) {
    if (stored <= 0)
        return 0;
    const double chars = stored >= 1 + 5.0 / 7 ? (stored * 7 - 5) / 7 : stored / (1 + 5.0 / 7);
    return std::round(chars * 100) / 100;
}

QString DirOf(const QString& part) {
    return part.section('/', 0, -2);
}
QString RelsOf(const QString& part) {
    return DirOf(part) + "/_rels/" + part.section('/', -1) + ".rels";
}

QHash<QString, QString> Relationships(const Zip& zip, const QString& part) {
    QHash<QString, QString> out;
    const auto data = zip.read(RelsOf(part));
    Node root;
    if (!data || !Parse(*data, root))
        return out;
    std::vector<const Node*> rels;
    root.findAll(QStringLiteral("Relationship"), rels);
    for (const Node* r : rels)
        out.insert(r->attr("Id"), Resolve(DirOf(part), r->attr("Target")));
    return out;
}

QString BuiltInFormat(int id) {
    static const QHash<int, QString> formats = {{0, "General"},        {1, "0"},  {2, "0.00"},   {3, "#,##0"},
                                                {4, "#,##0.00"},       {9, "0%"}, {10, "0.00%"}, {14, "m/d/yyyy"},
                                                {22, "m/d/yyyy h:mm"}, {49, "@"}};
    return formats.value(id, QStringLiteral("General"));
}

QString Rgb(const Node* colour) {
    if (!colour)
        return QString();
    QString rgb = colour->attr("rgb");
    if (rgb.size() == 8)
        rgb = rgb.mid(2);
    return rgb.toUpper();
}

std::vector<WbStyle> ReadStyles(const Zip& zip) {
    std::vector<WbStyle> styles;
    const auto data = zip.read(QStringLiteral("xl/styles.xml"));
    Node root;
    if (!data || !Parse(*data, root))
        return styles;
    QHash<int, QString> numFmts;
    if (const Node* nf = root.find("numFmts"))
        for (const Node* f : nf->all("numFmt"))
            numFmts.insert(f->attr("numFmtId").toInt(), f->attr("formatCode"));
    std::vector<WbFont> fonts;
    if (const Node* fs = root.find("fonts"))
        for (const Node* f : fs->all("font")) {
            WbFont font;
            if (const Node* n = f->child("name"))
                font.name = n->attr("val");
            if (const Node* s = f->child("sz"))
                font.size = s->attr("val").toDouble();
            font.bold = f->child("b") != nullptr;
            font.italic = f->child("i") != nullptr;
            font.underline = f->child("u") != nullptr;
            fonts.push_back(font);
        }
    std::vector<std::pair<QString, QString>> fills;
    if (const Node* fs = root.find("fills"))
        for (const Node* f : fs->all("fill")) {
            const Node* p = f->child("patternFill");
            const QString pattern = p ? p->attr("patternType") : QString();
            fills.emplace_back(pattern == QLatin1String("none") ? QString() : pattern,
                               p ? Rgb(p->child("fgColor")) : QString());
        }
    std::vector<std::array<QString, 4>> borders;
    if (const Node* bs = root.find("borders"))
        for (const Node* b : bs->all("border")) {
            std::array<QString, 4> sides;
            const char* names[] = {"left", "right", "top", "bottom"};
            for (int i = 0; i < 4; ++i)
                if (const Node* s = b->child(names[i]))
                    sides[i] = s->attr("style");
            borders.push_back(sides);
        }
    if (const Node* xfs = root.find("cellXfs"))
        for (const Node* x : xfs->all("xf")) {
            WbStyle st;
            const int numFmtId = x->attr("numFmtId").toInt();
            st.numberFormat = numFmts.contains(numFmtId) ? numFmts.value(numFmtId) : BuiltInFormat(numFmtId);
            const size_t fontId = x->attr("fontId").toUInt();
            if (fontId < fonts.size())
                st.font = fonts[fontId];
            const size_t fillId = x->attr("fillId").toUInt();
            if (fillId < fills.size()) {
                st.fillPattern = fills[fillId].first;
                st.fillRgb = fills[fillId].second;
            }
            const size_t borderId = x->attr("borderId").toUInt();
            if (borderId < borders.size()) {
                st.borderLeft = borders[borderId][0];
                st.borderRight = borders[borderId][1];
                st.borderTop = borders[borderId][2];
                st.borderBottom = borders[borderId][3];
            }
            if (const Node* a = x->child("alignment")) {
                st.horizontal = a->attr("horizontal");
                st.vertical = a->attr("vertical");
                st.wrapText = a->attr("wrapText") == QLatin1String("1");
                const int rot = a->attr("textRotation").toInt();
                st.rotation = rot > 90 && rot <= 180 ? 90 - rot : rot;
            }
            styles.push_back(st);
        }
    return styles;
}

WbChart ReadChart(const Node& root) {
    WbChart chart;
    const Node* plot = root.find("plotArea");
    if (plot)
        for (const auto& c : plot->children)
            if (c.name.endsWith(QLatin1String("Chart"))) {
                chart.kind = c.name;
                if (const Node* d = c.child("barDir"))
                    chart.barDir = d->attr("val");
                if (const Node* g = c.child("grouping"))
                    chart.grouping = g->attr("val");
                for (const Node* s : c.all("ser")) {
                    WbSeries series;
                    if (const Node* tx = s->child("tx"))
                        if (const Node* f = tx->find("f"))
                            series.name = f->text;
                    if (const Node* cat = s->child("cat"))
                        if (const Node* f = cat->find("f"))
                            series.categories = f->text;
                    if (const Node* val = s->child("val"))
                        if (const Node* f = val->find("f"))
                            series.values = f->text;
                    chart.series.push_back(series);
                }
                break;
            }
    if (const Node* chartNode = root.find("chart"))
        if (const Node* title = chartNode->child("title")) {
            std::vector<const Node*> texts;
            title->findAll("t", texts);
            for (const Node* t : texts)
                chart.title += t->text;
        }
    if (const Node* legend = root.find("legend"))
        if (const Node* pos = legend->child("legendPos"))
            chart.legendPosition = pos->attr("val");
    if (plot)
        if (const Node* catAx = plot->child("catAx")) {
            if (const Node* body = catAx->find("bodyPr"))
                chart.categoryLabelRotation = -body->attr("rot").toInt() / 60000;
            if (const Node* skip = catAx->child("tickLblSkip"))
                chart.tickLabelSkip = skip->attr("val").toInt();
        }
    return chart;
}

} // namespace

const WbCell* WbSheet::cell(const QString& ref) const {
    const auto it = cells.find(ref.toUpper());
    return it == cells.end() ? nullptr : &it->second;
}

QString WbSheet::text(const QString& ref) const {
    const WbCell* c = cell(ref);
    return c ? c->text : QString();
}

QString WbSheet::shown(const QString& ref) const {
    const WbCell* c = cell(ref);
    if (c && c->isNumber() && c->style.numberFormat == QLatin1String("yyyy/mm/dd"))
        return QDate(1899, 12, 30).addDays(static_cast<qint64>(c->number)).toString("yyyy/MM/dd");
    return text(ref);
}

double WbSheet::number(const QString& ref) const {
    const WbCell* c = cell(ref);
    return c && c->isNumber() ? c->number : 0;
}

namespace {
int ColumnOfRef(const QString& ref) {
    int n = 0;
    for (const QChar ch : ref) {
        if (!ch.isLetter())
            break;
        n = n * 26 + (ch.toUpper().unicode() - 'A' + 1);
    }
    return n;
}
} // namespace

int WbSheet::lastRow() const {
    int last = 0;
    for (const auto& [ref, c] : cells) {
        static const QRegularExpression digits("[0-9]+$");
        last = std::max(last, digits.match(ref).captured(0).toInt());
    }
    return last;
}

int WbSheet::lastColumn() const {
    int last = 0;
    for (const auto& [ref, c] : cells)
        last = std::max(last, ColumnOfRef(ref));
    return last;
}

QString WorkbookReader::newestIn(const QString& folder) {
    const QFileInfoList files = QDir(folder).entryInfoList({"*.xlsx"}, QDir::Files, QDir::Time);
    return files.isEmpty() ? QString() : files.first().absoluteFilePath();
}

QStringList WorkbookReader::sheetNames() const {
    QStringList names;
    for (const auto& s : m_sheets)
        names << s.name;
    return names;
}

const WbSheet* WorkbookReader::sheet(const QString& name) const {
    for (const auto& s : m_sheets)
        if (s.name == name)
            return &s;
    return nullptr;
}

const WbSheet* WorkbookReader::sheet(int index) const {
    if (index < 0 || index >= static_cast<int>(m_sheets.size()))
        return nullptr;
    return &m_sheets[static_cast<size_t>(index)];
}

bool WorkbookReader::open(const QString& path) {
    m_sheets.clear();
    Zip zip(path);
    if (!zip.ok()) {
        m_error = "cannot open " + path + " as a zip archive";
        return false;
    }
    const auto workbookXml = zip.read(QStringLiteral("xl/workbook.xml"));
    Node workbook;
    if (!workbookXml || !Parse(*workbookXml, workbook)) {
        m_error = "no readable xl/workbook.xml";
        return false;
    }
    QStringList shared;
    if (const auto data = zip.read(QStringLiteral("xl/sharedStrings.xml"))) {
        Node root;
        Parse(*data, root);
        if (const Node* sst = root.child("sst"))
            for (const Node* si : sst->all("si")) {
                std::vector<const Node*> runs; // one plain text, or the runs of a rich text
                si->findAll("t", runs);
                QString text;
                for (const Node* t : runs)
                    text += t->text;
                shared << text;
            }
    }
    const std::vector<WbStyle> styles = ReadStyles(zip);
    const auto rels = Relationships(zip, QStringLiteral("xl/workbook.xml"));
    if (const Node* view = workbook.find("workbookView"))
        m_activeTab = view->attr("activeTab").toInt();
    std::vector<const Node*> definedNames;
    workbook.findAll("definedName", definedNames);

    std::vector<const Node*> sheetNodes;
    workbook.findAll("sheet", sheetNodes);
    for (size_t index = 0; index < sheetNodes.size(); ++index) {
        const Node* sn = sheetNodes[index];
        WbSheet sheet;
        sheet.name = sn->attr("name");
        for (const Node* dn : definedNames)
            if (dn->attr("name") == QLatin1String("_xlnm.Print_Titles") && dn->attr("localSheetId").toUInt() == index)
                sheet.printTitles = dn->text;
        const QString part = rels.value(sn->attr("id"));
        const auto data = zip.read(part);
        Node root;
        if (!data || !Parse(*data, root)) {
            m_error = "cannot read " + part;
            return false;
        }
        const Node* ws = root.child("worksheet");
        if (!ws) {
            m_error = part + " is no worksheet";
            return false;
        }
        if (const Node* cols = ws->child("cols"))
            for (const Node* c : cols->all("col"))
                for (int i = c->attr("min").toInt(); i <= c->attr("max").toInt(); ++i)
                    sheet.columnWidths[i] = CharactersOfWidth(c->attr("width").toDouble());
        if (const Node* data2 = ws->child("sheetData"))
            for (const Node* row : data2->all("row")) {
                if (!row->attr("ht").isEmpty())
                    sheet.rowHeights[row->attr("r").toInt()] = row->attr("ht").toDouble();
                for (const Node* c : row->all("c")) {
                    WbCell cell;
                    const size_t s = c->attr("s").toUInt();
                    if (s < styles.size())
                        cell.style = styles[s];
                    const Node* v = c->child("v");
                    const Node* f = c->child("f");
                    if (f)
                        cell.formula = f->text;
                    const QString t = c->attr("t");
                    if (t == QLatin1String("s") && v) {
                        cell.type = "s";
                        cell.text = shared.value(v->text.toInt());
                    } else if (t == QLatin1String("str")) {
                        cell.type = "str";
                        cell.text = v ? v->text : QString();
                    } else if (t == QLatin1String("b")) {
                        cell.type = "b";
                        cell.text = v ? v->text : QString();
                    } else if (v) {
                        cell.type = "n";
                        cell.text = v->text;
                        cell.number = v->text.toDouble();
                    }
                    sheet.cells[c->attr("r").toUpper()] = cell;
                }
            }
        if (const Node* merges = ws->child("mergeCells"))
            for (const Node* m : merges->all("mergeCell"))
                sheet.merges << m->attr("ref").toUpper();
        if (const Node* page = ws->child("pageSetup")) {
            sheet.orientation = page->attr("orientation");
            sheet.fitToHeight = page->attr("fitToHeight");
        }
        if (const Node* pr = ws->child("sheetPr"))
            if (const Node* fit = pr->child("pageSetUpPr"))
                sheet.fitToPage = fit->attr("fitToPage") == QLatin1String("1");
        if (const Node* hf = ws->child("headerFooter"))
            if (const Node* h = hf->child("oddHeader"))
                sheet.header = h->text;
        if (const Node* drawing = ws->child("drawing")) {
            const auto sheetRels = Relationships(zip, part);
            const QString drawingPart = sheetRels.value(drawing->attr("id"));
            const auto drawingRels = Relationships(zip, drawingPart);
            if (const auto dxml = zip.read(drawingPart)) {
                Node droot;
                Parse(*dxml, droot);
                std::vector<const Node*> chartRefs;
                droot.findAll("chart", chartRefs);
                for (const Node* ref : chartRefs) {
                    const auto cxml = zip.read(drawingRels.value(ref->attr("id")));
                    Node croot;
                    if (cxml && Parse(*cxml, croot))
                        sheet.charts.push_back(ReadChart(croot));
                }
            }
        }
        m_sheets.push_back(std::move(sheet));
    }
    return true;
}
