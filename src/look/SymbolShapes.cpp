#include "SymbolShapes.h"

#include <algorithm>
#include <array>

namespace {

struct Shape {
    const char *name;
    const char *body;
};

constexpr std::array shapes = std::to_array<Shape>({
    {"arrow.up", R"(<path d="M12 19.5V4.5M5.5 11L12 4.5L18.5 11"/>)"},
    {"arrow.right", R"(<path d="M4.5 12H19.5M13 5.5L19.5 12L13 18.5"/>)"},
    {"arrow.down", R"(<path d="M12 4.5V19.5M5.5 13L12 19.5L18.5 13"/>)"},
    {"circle", R"(<circle cx="12" cy="12" r="8.75"/>)"},
    {"circle.badge.checkmark", R"(<path d="M20.7 11.2A8.75 8.75 0 1 0 11.2 20.7M13.6 18.2L16.2 20.8L21.1 15.54"/>)"},
    {"checkmark.circle.fill",
        R"(<path fill="currentColor" stroke="none" fill-rule="evenodd" d="M12 2.4A9.6 9.6 0 1 1 12 21.6A9.6 9.6 0 1 1 12 2.4ZM6.93 12.67L10.55 16.29L17.26 8.88L15.78 7.53L10.48 13.38L8.35 11.25Z"/>)"},
    {"trash",
        R"(<path d="M4.25 6.75H19.75M9.25 6.5V4.75A1 1 0 0 1 10.25 3.75H13.75A1 1 0 0 1 14.75 4.75V6.5M6.25 6.75L7 18.9A1.6 1.6 0 0 0 8.6 20.25H15.4A1.6 1.6 0 0 0 17 18.9L17.75 6.75M10.25 10.75V16.25M13.75 10.75V16.25"/>)"},
    {"doc.on.doc",
        R"(<path d="M6 8.25H13A1.75 1.75 0 0 1 14.75 10V18.75A1.75 1.75 0 0 1 13 20.5H6A1.75 1.75 0 0 1 4.25 18.75V10A1.75 1.75 0 0 1 6 8.25ZM9.25 8V5.25A1.75 1.75 0 0 1 11 3.5H18A1.75 1.75 0 0 1 19.75 5.25V14A1.75 1.75 0 0 1 18 15.75H15"/>)"},
    {"speaker.circle",
        R"(<circle cx="12" cy="12" r="9.1" stroke-width="1.6"/><path fill="currentColor" stroke="none" d="M7.6 9.9H10L14.2 6.7V17.3L10 14.1H7.6Z"/>)"},
    {"speaker.circle.lit",
        R"(<path fill="currentColor" stroke="none" fill-rule="evenodd" d="M12 2A10 10 0 1 1 12 22A10 10 0 1 1 12 2ZM5.6 9.6H8.2L12.4 6.3V17.7L8.2 14.4H5.6ZM14.3 9.4L15.8 7.9A5.8 5.8 0 0 1 15.8 16.1L14.3 14.6A3.7 3.7 0 0 0 14.3 9.4Z"/>)"},
    {"arrow.up.square",
        R"(<rect x="3.75" y="3.75" width="16.5" height="16.5" rx="3.5"/><path d="M12 16.5V7.75M8.25 11.25L12 7.5L15.75 11.25"/>)"},
    {"arrow.down.square",
        R"(<rect x="3.75" y="3.75" width="16.5" height="16.5" rx="3.5"/><path d="M12 7.5V16.25M8.25 12.75L12 16.5L15.75 12.75"/>)"},
    {"delete.left",
        R"(<path d="M8.7 5.5H19A2 2 0 0 1 21 7.5V16.5A2 2 0 0 1 19 18.5H8.7L3 12ZM11.75 9.5L16.75 14.5M16.75 9.5L11.75 14.5"/>)"},
    {"line.3.horizontal.decrease.circle",
        R"(<circle cx="12" cy="12" r="9.1"/><path d="M7.5 9H16.5M9 12.25H15M10.75 15.5H13.25"/>)"},
    {"undo", R"(<path d="M8.5 4.75L4.25 9L8.5 13.25M4.25 9H14.25A5.25 5.25 0 0 1 14.25 19.5H9.5"/>)"},
    {"redo", R"(<path d="M15.5 4.75L19.75 9L15.5 13.25M19.75 9H9.75A5.25 5.25 0 0 0 9.75 19.5H14.5"/>)"},
    {"search", R"(<circle cx="10.75" cy="10.75" r="6.25"/><path d="M15.4 15.4L20 20"/>)"},
    {"settings",
        R"(<path d="M4 8H11.75M17.25 8H20M4 16H6.75M12.25 16H20"/><circle cx="14.5" cy="8" r="2.75"/><circle cx="9.5" cy="16" r="2.75"/>)"},
    {"warning",
        R"(<path d="M12 4.25L20.75 19.5H3.25ZM12 10V14.25"/><circle cx="12" cy="16.9" r="1.1" fill="currentColor" stroke="none"/>)"},
    {"folder",
        R"(<path d="M3.75 17.75V6.75A1.5 1.5 0 0 1 5.25 5.25H9.25L11.5 7.75H18.75A1.5 1.5 0 0 1 20.25 9.25V17.75A1.5 1.5 0 0 1 18.75 19.25H5.25A1.5 1.5 0 0 1 3.75 17.75Z"/>)"},
    {"star", R"(<path d="M12 3.6L14.6 8.9L20.4 9.7L16.2 13.8L17.2 19.6L12 16.9L6.8 19.6L7.8 13.8L3.6 9.7L9.4 8.9Z"/>)"},
    {"star.fill",
        R"(<path fill="currentColor" d="M12 3.6L14.6 8.9L20.4 9.7L16.2 13.8L17.2 19.6L12 16.9L6.8 19.6L7.8 13.8L3.6 9.7L9.4 8.9Z"/>)"},
    {"swap", R"(<path d="M7.75 4.25L4 8L7.75 11.75M4 8H19M16.25 12.25L20 16L16.25 19.75M20 16H5"/>)"},
    {"insert", R"(<path d="M4 4.75H20M4 19.25H20M12 8.5V15.5M8.5 12H15.5"/>)"},
    {"compare",
        R"(<rect x="3.5" y="5.5" width="5.5" height="13" rx="1.5"/><rect x="15" y="5.5" width="5.5" height="13" rx="1.5"/><path d="M12 3V21"/>)"},
    {"print",
        R"(<path d="M7 8.75V3.75H17V8.75M7 17H5.25A1.5 1.5 0 0 1 3.75 15.5V10.25A1.5 1.5 0 0 1 5.25 8.75H18.75A1.5 1.5 0 0 1 20.25 10.25V15.5A1.5 1.5 0 0 1 18.75 17H17M7 14H17V20.25H7Z"/>)"},
    {"chevron.right.2", R"(<path d="M5.5 5.5L12 12L5.5 18.5M12.5 5.5L19 12L12.5 18.5"/>)"},
    {"xmark", R"(<path d="M6.5 6.5L17.5 17.5M17.5 6.5L6.5 17.5"/>)"},
    {"tray",
        R"(<path d="M3.75 13.5L6.4 5.9A1.6 1.6 0 0 1 7.9 4.75H16.1A1.6 1.6 0 0 1 17.6 5.9L20.25 13.5V17.75A1.5 1.5 0 0 1 18.75 19.25H5.25A1.5 1.5 0 0 1 3.75 17.75ZM3.75 13.5H8.25L9.75 16H14.25L15.75 13.5H20.25"/>)"},
});

constexpr char opening[] = R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 24 24" fill="none" )"
                           R"(stroke="currentColor" stroke-width="1.75" stroke-linecap="round" )"
                           R"(stroke-linejoin="round">)";

} // namespace

QByteArray SymbolShapes::document(const QString &name)
{
    const auto *found = std::find_if(
        shapes.begin(), shapes.end(), [&name](const Shape &shape) { return name == QLatin1String(shape.name); });
    if (found == shapes.end()) {
        qFatal("No symbol is named %s", qUtf8Printable(name));
    }
    return QByteArray(opening) + found->body + "</svg>";
}

QStringList SymbolShapes::names()
{
    QStringList result;
    for (const Shape &shape : shapes) {
        result += QLatin1String(shape.name);
    }
    return result;
}
