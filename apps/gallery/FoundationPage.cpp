// Gallery page for the foundation layer: rectangle and point helpers, dates in several zones,
// dynamic values, table models and device identification. Every number and string shown is
// what the library returned, so the page doubles as a visual check of those helpers.
#include <cmath>
#include <iterator>
#include <numbers>
#include <optional>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <VelmarCoreUI/Core/VLXDateFormats.h>
#include <VelmarCoreUI/Core/VLXDateHelpers.h>
#include <VelmarCoreUI/Core/VLXStringHelpers.h>
#include <VelmarCoreUI/Models/VLXDeviceIdentification.h>
#include <VelmarCoreUI/Models/VLXTableSection.h>
#include <VelmarCoreUI/Models/VLXTableSectionRow.h>
#include <VelmarCoreUI/Platform/Device/VLXDevice.h>
#include <VelmarCoreUI/Platform/Device/VLXScreen.h>
#include <VelmarCoreUI/Platform/Foundation/VLXRecord.h>
#include <VelmarCoreUI/Platform/Foundation/VLXStringFormat.h>
#include <VelmarCoreUI/Platform/Foundation/VLXTimeZone.h>
#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>
#include <VelmarCoreUI/Platform/Primitives/VLXGeometry.h>
#include <VelmarCoreUI/Utilities/VLXGeometryFunctions.h>
#include <VelmarCoreUI/Utilities/VLXValueBoxing.h>
#include "GalleryPage.h"

namespace {

using Row = std::vector<std::string>;

// printf would show the sign bit of a NaN ("-nan"), which means nothing here.
std::string num(double value) {
    return std::isnan(value) ? "nan" : VLXStringWithFormat("%g", value);
}
std::string integerText(VLXInteger value) {
    return VLXStringWithFormat("%lld", static_cast<long long>(value));
}
std::string pointText(VLXPoint p) {
    return "(" + num(p.x) + ", " + num(p.y) + ")";
}
// The stored fields, so that a negative width shows as it is kept.
std::string rectText(VLXRect r) {
    return "(" + num(r.origin.x) + ", " + num(r.origin.y) + ", " + num(r.size.width) + ", " +
           num(r.size.height) + ")";
}
std::string valueText(const VLXValue& value) {
    return value.isNil() ? "nil" : value.description();
}

std::string heading(const std::string& title, const std::string& intro) {
    return "<h2>" + galleryEscapeHTML(title) + "</h2>\n<p>" + galleryEscapeHTML(intro) + "</p>\n";
}
std::string pre(const std::string& text) {
    return "<pre>" + galleryEscapeHTML(text) + "</pre>\n";
}

std::string cells(const std::string& tag, const Row& row) {
    std::string html;
    for (const auto& cell : row) {
        html += "<" + tag + ">" + galleryEscapeHTML(cell) + "</" + tag + ">";
    }
    return html;
}

// Cells are plain text; a non-empty `keys` adds a leading colour key per row.
std::string table(const Row& header, const std::vector<Row>& rows,
                  const std::vector<std::string>& keys = {}) {
    std::string html = "<table class=\"data\"><tr>" + std::string(keys.empty() ? "" : "<th></th>") +
                       cells("th", header) + "</tr>\n";
    for (size_t i = 0; i < rows.size(); ++i) {
        const std::string key =
            i < keys.size()
                ? "<td><span class=\"key\" style=\"background:" + keys[i] + "\"></span></td>"
                : "";
        html += "<tr>" + key + cells("td", rows[i]) + "</tr>\n";
    }
    return html + "</table>\n";
}

// Rectangles are drawn standardised, as every reader of a rectangle sees them; a ghost is the
// dashed outline the results are compared with.
std::string svgRect(VLXRect r, const std::string& color, bool ghost = false) {
    return VLXStringWithFormat(
        "<rect x=\"%g\" y=\"%g\" width=\"%g\" height=\"%g\" stroke=\"%s\" "
        "fill=\"%s\" fill-opacity=\"%s\" stroke-dasharray=\"%s\"/>\n",
        r.minX(), r.minY(), r.width(), r.height(), color.c_str(), color.c_str(),
        ghost ? "0" : "0.25", ghost ? "4 3" : "none");
}
std::string svgText(VLXPoint at, const std::string& text, const char* anchor = "start") {
    return VLXStringWithFormat("<text x=\"%g\" y=\"%g\" text-anchor=\"%s\">", at.x, at.y, anchor) +
           galleryEscapeHTML(text) + "</text>\n";
}
std::string svgDot(VLXPoint p, const std::string& color, const std::string& label) {
    return VLXStringWithFormat("<circle cx=\"%g\" cy=\"%g\" r=\"4\" fill=\"%s\"/>\n", p.x, p.y,
                               color.c_str()) +
           svgText({p.x + 7, p.y - 6}, label);
}

std::string geometrySection() {
    const VLXRect base = VLXRectMake(30, 22, 100, 24);
    const VLXRect container = VLXRectMake(330, 12, 140, 100);
    const VLXPoint p1 = VLXPointMake(570, 24), p2 = VLXPointMake(490, 110);
    const VLXPoint a = VLXPointMake(350, 232), b = VLXPointMake(440, 152),
                   c = VLXPointMake(580, 222);

    // One lane per horizontal operation: call, result, colour.
    const std::vector<std::tuple<std::string, VLXRect, const char*>> lanes = {
        {"base", base, "#555"},
        {"VLXRectSetCenterX(base, 180.5)", VLXRectSetCenterX(base, 180.5), "#1f77b4"},
        {"VLXRectSetMaxX(base, 290)", VLXRectSetMaxX(base, 290), "#ff7f0e"},
        {"VLXRectStretchWidth(base, 40, false)", VLXRectStretchWidth(base, 40, false), "#2ca02c"},
        {"VLXRectStretchWidth(base, 40, true)", VLXRectStretchWidth(base, 40, true), "#d62728"},
    };
    std::string svg = "<svg class=\"figure\" width=\"600\" height=\"270\" font-size=\"11\">\n";
    std::vector<Row> rows;
    std::vector<std::string> keys;
    auto add = [&](const std::string& call, const std::string& result, const char* color) {
        rows.push_back({call, result});
        keys.push_back(color);
    };
    double laneY = 0;
    for (const auto& [call, rect, color] : lanes) {
        // The base stays behind each result as a dashed ghost.
        svg += VLXStringWithFormat("<g transform=\"translate(0,%g)\">\n", laneY) +
               svgText({30, 16}, call) + (laneY > 0 ? svgRect(base, "#999", true) : "") +
               svgRect(rect, color) + "</g>\n";
        add(call, rectText(rect), color);
        laneY += 52;
    }

    const VLXRect centred = VLXRectCenteredInRect(base, container);
    const VLXRect fromPoints = VLXRectFromPoints(p1, p2);
    svg += svgRect(container, "#999", true) +
           svgText({container.minX() + 4, container.minY() + 14}, "container") +
           svgRect(centred, "#9467bd") + svgRect(fromPoints, "#8c564b") +
           svgText({fromPoints.maxX(), fromPoints.maxY() + 14}, "stored " + rectText(fromPoints),
                   "end") +
           svgDot(p1, "#8c564b", "p1") + svgDot(p2, "#8c564b", "p2");
    add("container", rectText(container), "#999");
    add("VLXRectCenteredInRect(base, container)", rectText(centred), "#9467bd");
    add("VLXRectFromPoints(p1 " + pointText(p1) + ", p2 " + pointText(p2) + ")",
        rectText(fromPoints) + ", standardised " + rectText(fromPoints.standardized()), "#8c564b");

    const VLXPoint mid = CGPointGetMidpoint(a, c);
    const VLXPoint centroid = CGPointCentroidOfPoints(
        std::vector<VLXValue>{vlx_valueWithPoint(a), vlx_valueWithPoint(b), vlx_valueWithPoint(c)});
    const VLXPoint none = CGPointCentroidOfPoints(std::vector<VLXPoint>{});
    const double angle = VLXPointGetAngle(a, b);
    const double degrees = angle * 180 / std::numbers::pi;
    // Angles grow clockwise on screen (y points down), which is SVG's positive sweep as well.
    const double radius = 26;
    svg += VLXStringWithFormat(
        "<polygon points=\"%g,%g %g,%g %g,%g\" fill=\"none\" stroke=\"#ccc\"/>\n"
        "<line x1=\"%g\" y1=\"%g\" x2=\"%g\" y2=\"%g\" stroke=\"#ccc\"/>\n"
        "<path d=\"M %g %g A %g %g 0 %d 1 %g %g\" fill=\"none\" stroke=\"#17becf\" "
        "stroke-width=\"2\"/>\n",
        a.x, a.y, b.x, b.y, c.x, c.y, a.x, a.y, a.x + 2 * radius, a.y, a.x + radius, a.y, radius,
        radius, angle > std::numbers::pi ? 1 : 0, a.x + radius * std::cos(angle),
        a.y + radius * std::sin(angle));
    svg += svgText({a.x + radius + 6, a.y + 14}, VLXStringWithFormat("%.1f°", degrees)) +
           svgDot(a, "#333", "A") + svgDot(b, "#333", "B") + svgDot(c, "#333", "C") +
           svgDot(mid, "#e377c2", "mid AC") + svgDot(centroid, "#bcbd22", "centroid") + "</svg>\n";
    add("A, B, C", pointText(a) + ", " + pointText(b) + ", " + pointText(c), "#333");
    add("CGPointGetMidpoint(A, C)", pointText(mid), "#e377c2");
    add("CGPointCentroidOfPoints(boxed A, B, C)", pointText(centroid), "#bcbd22");
    add("CGPointCentroidOfPoints({})", pointText(none), "#fff");
    add("VLXPointGetAngle(A, B)", num(angle) + " rad = " + num(degrees) + "°", "#17becf");

    return heading("Geometry",
                   "Each result drawn standardised over the dashed base or container; the table "
                   "lists the stored values (x, y, width, height). y grows downward.") +
           "<div class=\"columns\">" + svg + table({"call", "result"}, rows, keys) + "</div>\n";
}

// 17:05:09 UTC on the 15th of `month` 2024.
VLXDate sampleInstant(VLXInteger month) {
    return vlx_dateWithYear(2024, month, 15, 17, 5, 9, VLXTimeZone::UTC()).value_or(VLXDate());
}

std::string zoneResult(const std::optional<VLXTimeZone>& zone) {
    return zone ? zone->name() : "nil";
}

std::string datesSection() {
    const VLXTimeZone utc = VLXTimeZone::UTC();
    const std::vector<VLXDate> instants = {sampleInstant(1), sampleInstant(7)};
    // Combined the way a time axis labels its ticks.
    const std::vector<std::string> patterns = {
        VLXStringWithFormat("%s %s", VLXDateFormatMonthName, VLXDateFormatDate),
        VLXStringWithFormat("%s:%s %s", VLXDateFormatHour, VLXDateFormatMinutes,
                            VLXDateFormatPeriod),
        VLXDateFormatYear, VLXDateFormatDayName, VLXDateFormatTimeZoneName};
    Row formatHeader = {"zone", "instant"};
    formatHeader.insert(formatHeader.end(), patterns.begin(), patterns.end());
    std::vector<Row> formatted, components;
    for (const char* name : {"UTC", "America/New_York", "Europe/Berlin", "Asia/Kolkata"}) {
        const std::optional<VLXTimeZone> zone = VLXTimeZone::timeZoneWithName(name);
        if (!zone) {
            formatted.push_back({name, "nil"});
            continue;
        }
        for (const VLXDate date : instants) {
            Row row = {name, date.description()};
            for (const auto& pattern : patterns) {
                row.push_back(vlx_formattedDateWithFormat(date, pattern, zone));
            }
            formatted.push_back(row);
        }
        const VLXDate date = instants.front();
        Row row = {name, vlx_dateByIgnoringTime(date, zone).description()};
        for (auto component : {vlx_year, vlx_month, vlx_day, vlx_hour, vlx_minute, vlx_second}) {
            row.push_back(integerText(component(date, zone)));
        }
        components.push_back(row);
    }
    const VLXDate nan = VLXDate::dateWithTimeIntervalSince1970(std::nan(""));
    const VLXInteger nanYear = vlx_year(nan, utc);
    const std::vector<Row> edges = {
        {"timeZoneWithName(\"Mars/Olympus_Mons\")",
         zoneResult(VLXTimeZone::timeZoneWithName("Mars/Olympus_Mons"))},
        {"timeZoneWithName(\"\")", zoneResult(VLXTimeZone::timeZoneWithName(""))},
        {"NaN date: description()", nan.description()},
        {"NaN date: vlx_formattedDateWithFormat(\"MMM d\")",
         "\"" + vlx_formattedDateWithFormat(nan, patterns.front(), utc) + "\""},
        {"NaN date: vlx_year",
         integerText(nanYear) +
             (nanYear == VLXUndefinedDateComponent ? " (VLXUndefinedDateComponent)" : "")},
        {"NaN date: vlx_dateByIgnoringTime", vlx_dateByIgnoringTime(nan, utc).description()},
    };
    return heading("Dates",
                   "15 January and 15 July 2024, 17:05:09 UTC, formatted with the core date "
                   "constants in four zones (July shows daylight saving time).") +
           table(formatHeader, formatted) + "<h3>Components of 15 January in each zone</h3>\n" +
           table({"zone", "vlx_dateByIgnoringTime", "year", "month", "day", "hour", "minute",
                  "second"},
                 components) +
           "<h3>Nil and invalid input</h3>\n" + table({"call", "result"}, edges);
}

const char* kDocument = R"(
{"title": "Rainfall", "unit": "mm", "verified": true, "owner": null,
 "station": {"name": "Harbour", "location": {"lat": 53.55, "lon": 9.99}},
 "readings": [{"day": 1, "mm": 2.5}, {"day": 2, "mm": 0}, {"day": 3, "mm": 11.25, "note": "storm"}]}
)";

std::string valuesSection() {
    const std::string source =
        vlx_stringByTrimmingLeadingAndTrailingWhitespaceAndNewlineCharacters(kDocument);
    const VLXValue document = VLXValue::fromJSON(source);
    std::vector<Row> lookups;
    for (const char* path : {"title", "station.location.lat", "readings.mm", "readings.note",
                             "owner", "station.altitude"}) {
        const VLXValue value = document.valueForKeyPath(path);
        lookups.push_back({path, value.className(), valueText(value)});
    }
    const VLXValue record =
        VLXRecord::create({{"date", sampleInstant(1)}, {"value", 12.5}, {"label", "peak"}});
    const std::vector<Row> records = {
        {"description()", record.description()},
        {"valueForKey(\"value\")", valueText(record.valueForKey("value"))},
        {"valueForKey(\"missing\")", valueText(record.valueForKey("missing"))},
        {"toJSON()", record.toJSON()},
    };
    std::vector<Row> parsed;
    for (const char* text : {"{\"a\": [1, 2,}", "1e400", "", "[1, 2.5, true, null]"}) {
        parsed.push_back({text, valueText(VLXValue::fromJSON(text))});
    }
    return heading("Values",
                   "A JSON document read with VLXValue::fromJSON, its description, key-path "
                   "lookups (arrays map a path over their elements), a record and bad input.") +
           "<div class=\"columns\"><div>" + pre(source) + "<h3>valueForKeyPath</h3>\n" +
           table({"key path", "class", "result"}, lookups) + "</div>" +
           pre(document.description()) + "</div>\n<h3>VLXRecord</h3>\n" +
           table({"call", "result"}, records) + "<h3>fromJSON</h3>\n" +
           table({"text", "result"}, parsed);
}

std::string captionDiv(const char* cssClass, const std::optional<std::string>& text) {
    return VLXIsNonEmptyString(text) ? "<div class=\"" + std::string(cssClass) + "\">" +
                                           galleryEscapeHTML(*text) + "</div>"
                                     : "";
}

std::string groupedTable(const VLXTableSection& section) {
    std::string html = "<div class=\"grouped\">" + captionDiv("group-title", section.title());
    html += "<table>";
    for (const auto& row : section.rows()) {
        html += "<tr><td>" + galleryEscapeHTML(row->title().value_or("nil")) +
                "</td><td class=\"value\">" + galleryEscapeHTML(valueText(row->value())) +
                "</td><td class=\"cell\">" +
                galleryEscapeHTML(row->cellIdentifier().value_or("nil")) + "</td></tr>";
    }
    return html + "</table>" + captionDiv("group-footer", section.footerTitle()) + "</div>\n";
}

std::string tableModelSection() {
    const VLXValue document = VLXValue::fromJSON(kDocument);
    auto section = VLXTableSection::sectionWithTitle(document.valueForKey("title").stringValue());
    section->addRowWithTitle("Station", document.valueForKeyPath("station.name"));
    section->addRow(VLXTableSectionRow::rowWithTitle(
        "Latest", document.valueForKeyPath("readings.mm").objectAtIndex(2), "ValueCell"));
    section->addRow(VLXTableSectionRow::rowWithTitle("Verified", document.valueForKey("verified"),
                                                     "SwitchCell"));
    section->addRow(VLXTableSectionRow::rowWithTitle("Owner", document.valueForKey("owner")));
    section->setFooterTitle(
        "Rows read from the JSON document above; a row without a cell "
        "identifier uses the caller's default cell.");
    return heading("Table models",
                   "A VLXTableSection drawn as a grouped table (title, value, cell identifier), "
                   "and its archive.") +
           "<div class=\"columns\">" + groupedTable(*section) + pre(section->archivedJSON()) +
           "</div>\n";
}

const char* familyName(VLXDeviceFamily family) {
    static const char* const names[] = {"unknown", "iPhone", "iPod", "iPad", "AppleTV", "Watch"};
    return family < std::size(names) ? names[family] : "unknown";
}

Row deviceRow(const std::string& label) {
    const VLXDevice& device = *VLXDevice::currentDevice();
    const VLXDeviceFamily family = vlx_deviceFamily(device);
    Row row = {label, vlx_modelIdentifier(device), num(VLXScreen::mainScreen()->bounds().width())};
    row.insert(row.end(), {vlx_modelName(device), integerText(vlx_devicePlatform(device)),
                           integerText(family) + " " + familyName(family)});
    return row;
}

std::string deviceSection() {
    // Identifiers and the main screen's width while posing.
    const std::vector<std::pair<const char*, double>> poses = {
        {"iPhone1,1", 390}, {"iPhone3,1", 390}, {"iPhone5,3", 390},  {"iPhone7,2", 390},
        {"iPhone8,2", 390}, {"iPad4,1", 390},   {"iPad4,3", 390},    {"iPad6,8", 390},
        {"iPod5,1", 390},   {"Watch1,1", 390},  {"AppleTV5,3", 390}, {"i386", 390},
        {"x86_64", 390},    {"x86_64", 1024}};
    const auto screen = VLXScreen::mainScreen();
    const VLXRect saved = screen->bounds();
    std::vector<Row> rows;
    for (const auto& [identifier, width] : poses) {
        screen->setBounds(VLXRectSetWidth(saved, width));
        const VLXScopedModelIdentifier posing(identifier);
        rows.push_back(deviceRow("posed"));
    }
    screen->setBounds(saved);
    rows.push_back(deviceRow("this machine"));
    const VLXDevice& device = *VLXDevice::currentDevice();
    return heading("Device",
                   "Model identifiers posed with VLXScopedModelIdentifier, read back "
                   "through the device identification functions; simulators are "
                   "named by the main screen's width. This machine runs " +
                       device.systemName() + " " + device.systemVersion() + " (" + device.model() +
                       ").") +
           table({"source", "identifier", "screen width", "vlx_modelName", "vlx_devicePlatform",
                  "vlx_deviceFamily"},
                 rows);
}

}  // namespace

GalleryPage makeFoundationPage(const std::filesystem::path& /*outputDirectory*/) {
    GalleryPage page;
    page.id = "foundation";
    page.title = "Geometry, dates, values, models and device";
    page.summary =
        "rectangle and point helpers, dates in four zones, JSON values and key paths, "
        "table sections and device identification";
    page.bodyHTML = "<h1>" + galleryEscapeHTML(page.title) + "</h1>\n" + geometrySection() +
                    datesSection() + valuesSection() + tableModelSection() + deviceSection();
    return page;
}
