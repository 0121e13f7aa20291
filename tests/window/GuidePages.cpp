#include "GuidePages.h"

#include <QDir>
#include <QFile>
#include <QXmlStreamReader>

namespace {

/// Reads elements from the outside in, as a row of a table holds keys and entries of menus.
class PageReader {
public:
    PageReader(GuidePage &page, QIODevice &file)
        : m_page(page)
        , m_xml(&file)
    {
    }

    void read()
    {
        if (m_xml.readNextStartElement()) {
            readElement();
        }
        m_page.problem = m_xml.hasError() ? m_xml.errorString() : QString();
    }

private:
    /// Returns the element's text.
    QString readElement()
    {
        const QString name = m_xml.name().toString();
        const QXmlStreamAttributes attributes = m_xml.attributes();
        note(name, attributes);
        QString text;
        QStringList cells;
        while (!m_xml.atEnd() && m_xml.readNext() != QXmlStreamReader::EndElement) {
            if (m_xml.isCharacters()) {
                text += m_xml.text();
            } else if (m_xml.isStartElement()) {
                const bool isCell = m_xml.name() == QLatin1String("td");
                const QString inner = readElement();
                text += inner;
                if (isCell) {
                    cells.append(inner.simplified());
                }
            }
        }
        noteText(name, attributes, text.simplified(), cells);
        return text;
    }

    void note(const QString &name, const QXmlStreamAttributes &attributes)
    {
        const auto value = [&attributes](const char *key) { return attributes.value(QLatin1String(key)).toString(); };
        if (attributes.hasAttribute(QLatin1String("id"))) {
            m_page.anchors.append(value("id"));
        }
        if (name == QLatin1String("html")) {
            m_page.language = value("lang");
        } else if (name == QLatin1String("a") || name == QLatin1String("link")) {
            m_page.links.append(value("href"));
        } else if (name == QLatin1String("source")) {
            m_page.pictures.append(value("srcset"));
        } else if (name == QLatin1String("img")) {
            m_page.pictures.append(value("src"));
            m_page.sizes.insert(value("src"), QSize(value("width").toInt(), value("height").toInt()));
            if (value("alt").isEmpty()) {
                m_page.picturesWithoutText.append(value("src"));
            }
        } else if (name == QLatin1String("nav")) {
            m_isInNavigation = true;
        } else if (name == QLatin1String("main")) {
            m_isInNavigation = false;
        }
    }

    void noteText(
        const QString &name, const QXmlStreamAttributes &attributes, const QString &text, const QStringList &cells)
    {
        const QString kind = attributes.value(QLatin1String("class")).toString();
        if (name == QLatin1String("kbd")) {
            m_page.keys.append(text);
        } else if (name == QLatin1String("title")) {
            m_page.title = text;
        } else if (name == QLatin1String("h1")) {
            m_page.headings.append(text);
        } else if (name == QLatin1String("tr") && !cells.isEmpty()) {
            m_page.rows.append(cells.join(u'|'));
        } else if (name == QLatin1String("a") && m_isInNavigation) {
            m_page.navigation.append(attributes.value(QLatin1String("href")).toString() + u' ' + text);
        } else if (kind == QLatin1String("menu")) {
            m_page.menus.append(text);
        } else if (kind == QLatin1String("button")) {
            m_page.buttons.append(text);
        } else if (kind == QLatin1String("message")) {
            m_page.messages.append(text);
        }
    }

    GuidePage &m_page;
    QXmlStreamReader m_xml;
    bool m_isInNavigation = false;
};

} // namespace

GuidePage GuidePage::read(const QString &directory, const QString &file)
{
    GuidePage page;
    page.file = file;
    QFile source(directory + u'/' + file);
    if (source.open(QIODevice::ReadOnly)) {
        PageReader(page, source).read();
    } else {
        page.problem = source.errorString();
    }
    return page;
}

std::vector<GuidePage> GuidePage::readAll(const QString &directory)
{
    std::vector<GuidePage> pages;
    const QStringList files = QDir(directory).entryList({QStringLiteral("*.html")}, QDir::Files, QDir::Name);
    for (const QString &file : files) {
        pages.push_back(read(directory, file));
    }
    return pages;
}
