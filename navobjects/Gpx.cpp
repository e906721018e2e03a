#include "navobjects/Gpx.h"

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>
#include <libxml/xmlwriter.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>

#include "core/Format.h"
#include "core/Val.h"
#include "navobjects/Symbols.h"

namespace ombra {

const char* const kOmbraGpxNamespace = "urn:ombra:gpx:1";

namespace {

constexpr size_t kMaxSlots = 32767;

// ---- Text -----------------------------------------------------------------

std::string Degrees(double seconds, bool longitude) {
    double deg = std::isfinite(seconds) ? seconds / 3600.0 : 0.0;
    if (!longitude) deg = std::clamp(deg, -90.0, 90.0);
    if (longitude) {
        while (deg >= 180.0) deg -= 360.0;
        while (deg < -180.0) deg += 360.0;
    }
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.12f", deg);
    std::string s = buf;
    while (!s.empty() && s.back() == '0') s.pop_back();
    if (!s.empty() && s.back() == '.') s.pop_back();
    if (s == "-0") s = "0";
    return s;
}

bool ParseDegrees(const xmlChar* text, double limit, double& out) {
    if (!text) return false;
    std::string t = Trim(reinterpret_cast<const char*>(text));
    if (!IsNumeric(t)) return false;
    double v = Val(t);
    if (!std::isfinite(v) || v < -limit || v > limit) return false;
    out = v;
    return true;
}

std::string Number(double v) {
    std::string s = NumberText(v);
    return s;
}

// ---- Reading --------------------------------------------------------------

bool Is(const xmlNode* n, const char* local) {
    return n && n->type == XML_ELEMENT_NODE && n->name && std::strcmp(reinterpret_cast<const char*>(n->name), local) == 0;
}

std::string TextOf(const xmlNode* n) {
    std::string s;
    for (const xmlNode* c = n->children; c; c = c->next)
        if ((c->type == XML_TEXT_NODE || c->type == XML_CDATA_SECTION_NODE) && c->content)
            s += reinterpret_cast<const char*>(c->content);
    return s;
}

const xmlNode* Child(const xmlNode* n, const char* local) {
    for (const xmlNode* c = n->children; c; c = c->next)
        if (Is(c, local)) return c;
    return nullptr;
}

std::string ChildText(const xmlNode* n, const char* local) {
    const xmlNode* c = Child(n, local);
    return c ? CleanText(Trim(TextOf(c))) : std::string();
}

// Ombra's extension values of a point or route, by local name.
std::string Extension(const xmlNode* n, const char* local) {
    const xmlNode* ext = Child(n, "extensions");
    if (!ext) return "";
    for (const xmlNode* c = ext->children; c; c = c->next)
        if (Is(c, local) && c->ns && c->ns->href &&
            std::strcmp(reinterpret_cast<const char*>(c->ns->href), kOmbraGpxNamespace) == 0)
            return Trim(TextOf(c));
    return "";
}

int16_t SmallInt(const std::string& text, int16_t lo, int16_t hi, int16_t fallback) {
    if (!IsNumeric(text)) return fallback;
    double v = Val(text);
    if (!(v >= lo && v <= hi)) return fallback;
    return int16_t(std::lround(v));
}

// A <wpt>, <rtept> or <trkpt>; false without a usable position.
bool ReadPoint(const xmlNode* n, Waypoint& wp) {
    double lat = 0, lon = 0;
    xmlChar* a = xmlGetProp(n, BAD_CAST "lat");
    xmlChar* b = xmlGetProp(n, BAD_CAST "lon");
    bool ok = ParseDegrees(a, 90.0, lat) && ParseDegrees(b, 180.0, lon);
    xmlFree(a);
    xmlFree(b);
    if (!ok) return false;
    wp.Position.Wgs84 = LatLong{lon * 3600.0, lat * 3600.0};
    wp.Name = ChildText(n, "name");
    wp.Description = ChildText(n, "desc");
    if (wp.Description.empty()) wp.Description = ChildText(n, "cmt");
    std::string sym = ChildText(n, "sym");
    int16_t icon = sym.empty() ? -1 : SymbolFromGpx(sym);
    wp.Icon = icon < 0 ? 0 : icon;
    wp.LabelMode = SmallInt(Extension(n, "label"), 0, 3, 1);
    std::string range = Extension(n, "range");
    wp.AlarmRange = IsNumeric(range) && std::isfinite(Val(range)) && std::fabs(Val(range)) < 1e6 ? float(Val(range)) : 0.5f;
    wp.DatumFlag = 1;
    wp.Attachment = CleanText(Extension(n, "attachment"));
    return true;
}

struct Reader {
    GpxData& out;
    void Wpt(const xmlNode* n) {
        if (out.Waypoints.size() >= kMaxSlots) {
            ++out.Skipped;
            return;
        }
        Waypoint wp;
        if (!ReadPoint(n, wp)) {
            ++out.Skipped;
            return;
        }
        wp.Number = int16_t(out.Waypoints.size() + 1);
        if (wp.Name.empty()) wp.Name = "WP" + Format(wp.Number, "000");
        out.Waypoints.push_back(std::move(wp));
    }
    void Rte(const xmlNode* n) {
        if (out.Routes.size() >= kMaxSlots) return;
        Route r;
        r.Number = int16_t(out.Routes.size() + 1);
        r.Name = ChildText(n, "name");
        if (r.Name.empty()) r.Name = "R" + Format(r.Number, "000");
        r.Description = ChildText(n, "desc");
        r.Display = Extension(n, "display") == "0" ? 0 : -1;
        r.Colour = SmallInt(Extension(n, "colour"), 0, 15, 0);
        r.ShowLegText = Extension(n, "legtext") == "1";
        for (const xmlNode* c = n->children; c; c = c->next) {
            if (!Is(c, "rtept")) continue;
            Waypoint p;
            if (r.Points.size() >= kMaxSlots || !ReadPoint(c, p)) {
                ++out.Skipped;
                continue;
            }
            p.Number = int16_t(r.Points.size() + 1);
            if (p.Name.empty()) p.Name = "R" + Format(r.Number, "0") + ".WP" + Format(p.Number, "0");
            r.Points.push_back(std::move(p));
            RouteLeg leg;
            leg.IsGreatCircle = Extension(c, "leg") == "GC" ? -1 : 0;
            r.Legs.push_back(leg);
        }
        r.PointCount = int16_t(r.Points.size());
        out.Routes.push_back(std::move(r));
    }
    void Trk(const xmlNode* n) {
        GpxTrack t;
        t.Name = ChildText(n, "name");
        for (const xmlNode* s = n->children; s; s = s->next) {
            if (!Is(s, "trkseg")) continue;
            TrackSegment seg;
            for (const xmlNode* c = s->children; c; c = c->next) {
                if (!Is(c, "trkpt")) continue;
                Waypoint p;
                if (!ReadPoint(c, p)) {
                    ++out.Skipped;
                    continue;
                }
                NavPoint np;
                np.Wgs84 = p.Position.Wgs84;
                seg.Points.push_back(std::move(np));
            }
            t.Segments.push_back(std::move(seg));
        }
        out.Tracks.push_back(std::move(t));
    }
};

// libxml2 reports through a callback; the first message is kept.
struct ErrorSink {
    std::string first;
    int line = 0;
};
void CollectError(void* ctx, const xmlError* e) {
    auto* sink = static_cast<ErrorSink*>(ctx);
    if (!e || !sink->first.empty()) return;
    sink->first = Trim(e->message ? e->message : "malformed XML");
    sink->line = e->line;
}

// ---- Writing --------------------------------------------------------------

struct Writer {
    xmlTextWriterPtr w;
    void Elem(const char* name, const std::string& text) {
        std::string t = CleanText(text);
        if (t.empty()) return;
        xmlTextWriterWriteElement(w, BAD_CAST name, BAD_CAST t.c_str());
    }
    void Ext(const char* name, const std::string& text) {
        xmlTextWriterWriteElementNS(w, BAD_CAST "ombra", BAD_CAST name, nullptr, BAD_CAST text.c_str());
    }
    void Point(const char* tag, const Waypoint& p, const char* leg) {
        xmlTextWriterStartElement(w, BAD_CAST tag);
        xmlTextWriterWriteAttribute(w, BAD_CAST "lat", BAD_CAST Degrees(p.Position.Wgs84.Lat, false).c_str());
        xmlTextWriterWriteAttribute(w, BAD_CAST "lon", BAD_CAST Degrees(p.Position.Wgs84.Long, true).c_str());
        Elem("name", p.Name);
        Elem("desc", p.Description);
        Elem("sym", kSymbolNames[(p.Icon < 0 || p.Icon >= kSymbolCount) ? 0 : p.Icon]);
        xmlTextWriterStartElement(w, BAD_CAST "extensions");
        Ext("label", Format(p.LabelMode, "0"));
        Ext("range", Number(double(p.AlarmRange)));
        if (!p.Attachment.empty()) Ext("attachment", CleanText(p.Attachment));
        if (leg) Ext("leg", leg);
        xmlTextWriterEndElement(w);
        xmlTextWriterEndElement(w);
    }
};

}  // namespace

std::string CleanText(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    const unsigned char* s = reinterpret_cast<const unsigned char*>(text.data());
    size_t n = text.size(), i = 0;
    while (i < n) {
        unsigned char c = s[i];
        if (c < 0x80) {
            out.push_back(c < 0x20 || c == 0x7f ? ' ' : char(c));
            ++i;
            continue;
        }
        int len = (c & 0xE0) == 0xC0 ? 2 : (c & 0xF0) == 0xE0 ? 3 : (c & 0xF8) == 0xF0 ? 4 : 0;
        bool ok = len > 0 && i + size_t(len) <= n;
        uint32_t cp = 0;
        if (ok) {
            cp = c & (len == 2 ? 0x1F : len == 3 ? 0x0F : 0x07);
            for (int k = 1; k < len; ++k) {
                if ((s[i + size_t(k)] & 0xC0) != 0x80) {
                    ok = false;
                    break;
                }
                cp = (cp << 6) | (s[i + size_t(k)] & 0x3F);
            }
        }
        // Overlong forms, surrogates, beyond Unicode, and the two
        // non-characters XML forbids.
        if (ok && ((len == 2 && cp < 0x80) || (len == 3 && cp < 0x800) || (len == 4 && cp < 0x10000) ||
                   (cp >= 0xD800 && cp <= 0xDFFF) || cp > 0x10FFFF || cp == 0xFFFE || cp == 0xFFFF))
            ok = false;
        if (!ok) {
            out += "\xEF\xBF\xBD";
            ++i;
            continue;
        }
        out.append(text, i, size_t(len));
        i += size_t(len);
    }
    return out;
}

int16_t SymbolFromGpx(const std::string& sym) {
    std::string u = UCase(Trim(sym));
    for (int i = 0; i < kSymbolCount; ++i)
        if (u == UCase(kSymbolNames[i])) return int16_t(i);
    static const struct {
        const char* name;
        int16_t icon;
    } aliases[] = {{"ANCHOR", 3},        {"MARINA", 4},        {"DANGER AREA", 5},  {"SHIPWRECK", 6},
                   {"WRECK", 6},         {"FISHING AREA", 18}, {"FISHING HOT SPOT FACILITY", 18},
                   {"DIVING", 19},       {"DIVER DOWN FLAG 1", 20}, {"DIVER DOWN FLAG 2", 20},
                   {"BUOY, WHITE", 16},  {"LIGHT", 13},        {"WAYPOINT", 0},     {"FLAG", 23},
                   {"MOB", 36},          {"CIRCLE, RED", 24},  {"SQUARE, RED", 25}};
    for (const auto& a : aliases)
        if (u == a.name) return a.icon;
    return -1;
}

bool ReadGpx(const std::string& bytes, GpxData& out, std::string& why) {
    out = GpxData{};
    why.clear();
    ErrorSink sink;
    xmlParserCtxtPtr ctxt = xmlNewParserCtxt();
    if (!ctxt) {
        why = "out of memory";
        return false;
    }
    xmlSetStructuredErrorFunc(&sink, reinterpret_cast<xmlStructuredErrorFunc>(CollectError));
    // No network, no external entities or DTDs, no entity expansion; keep
    // what parses before a fault.
    int options = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_RECOVER | XML_PARSE_NOCDATA;
    xmlDocPtr doc = xmlCtxtReadMemory(ctxt, bytes.data(), int(std::min<size_t>(bytes.size(), size_t(INT32_MAX))),
                                      "gpx", nullptr, options);
    bool wellFormed = ctxt->wellFormed != 0;
    xmlSetStructuredErrorFunc(nullptr, nullptr);
    xmlFreeParserCtxt(ctxt);
    std::unique_ptr<xmlDoc, void (*)(xmlDocPtr)> hold(doc, xmlFreeDoc);
    const xmlNode* root = doc ? xmlDocGetRootElement(doc) : nullptr;
    if (!root) {
        why = "line " + std::to_string(sink.line > 0 ? sink.line : 1) + ": " +
              (sink.first.empty() ? std::string("the file holds no XML") : sink.first);
        return false;
    }
    if (!Is(root, "gpx")) {
        why = "line " + std::to_string(root->line) + ": the file is not GPX (its root is <" +
              reinterpret_cast<const char*>(root->name) + ">)";
        return false;
    }
    Reader r{out};
    for (const xmlNode* c = root->children; c; c = c->next) {
        if (Is(c, "wpt")) r.Wpt(c);
        else if (Is(c, "rte")) r.Rte(c);
        else if (Is(c, "trk")) r.Trk(c);
    }
    if (!wellFormed) {
        why = "line " + std::to_string(sink.line) + ": " + (sink.first.empty() ? std::string("malformed XML") : sink.first);
        return false;
    }
    return true;
}

std::string WriteGpx(const GpxData& data) {
    xmlBufferPtr buf = xmlBufferCreate();
    xmlTextWriterPtr tw = xmlNewTextWriterMemory(buf, 0);
    Writer w{tw};
    xmlTextWriterSetIndent(tw, 1);
    xmlTextWriterSetIndentString(tw, BAD_CAST "  ");
    xmlTextWriterStartDocument(tw, "1.0", "UTF-8", nullptr);
    xmlTextWriterStartElement(tw, BAD_CAST "gpx");
    xmlTextWriterWriteAttribute(tw, BAD_CAST "version", BAD_CAST "1.1");
    xmlTextWriterWriteAttribute(tw, BAD_CAST "creator", BAD_CAST "Ombra");
    xmlTextWriterWriteAttribute(tw, BAD_CAST "xmlns", BAD_CAST "http://www.topografix.com/GPX/1/1");
    xmlTextWriterWriteAttribute(tw, BAD_CAST "xmlns:ombra", BAD_CAST kOmbraGpxNamespace);
    for (const Waypoint& wp : data.Waypoints)
        if (wp.Used()) w.Point("wpt", wp, nullptr);
    for (const Route& r : data.Routes) {
        if (!r.Used()) continue;
        xmlTextWriterStartElement(tw, BAD_CAST "rte");
        w.Elem("name", r.Name);
        w.Elem("desc", r.Description);
        xmlTextWriterWriteElement(tw, BAD_CAST "number", BAD_CAST Format(r.Number, "0").c_str());
        xmlTextWriterStartElement(tw, BAD_CAST "extensions");
        w.Ext("colour", Format(r.Colour, "0"));
        w.Ext("display", r.Display ? "1" : "0");
        w.Ext("legtext", r.ShowLegText ? "1" : "0");
        xmlTextWriterEndElement(tw);
        for (size_t i = 0; i < r.Points.size(); ++i) {
            bool gc = i < r.Legs.size() && r.Legs[i].IsGreatCircle != 0;
            w.Point("rtept", r.Points[i], gc ? "GC" : "RL");
        }
        xmlTextWriterEndElement(tw);
    }
    for (const GpxTrack& t : data.Tracks) {
        xmlTextWriterStartElement(tw, BAD_CAST "trk");
        w.Elem("name", t.Name);
        for (const TrackSegment& s : t.Segments) {
            xmlTextWriterStartElement(tw, BAD_CAST "trkseg");
            for (const NavPoint& p : s.Points) {
                xmlTextWriterStartElement(tw, BAD_CAST "trkpt");
                xmlTextWriterWriteAttribute(tw, BAD_CAST "lat", BAD_CAST Degrees(p.Wgs84.Lat, false).c_str());
                xmlTextWriterWriteAttribute(tw, BAD_CAST "lon", BAD_CAST Degrees(p.Wgs84.Long, true).c_str());
                xmlTextWriterEndElement(tw);
            }
            xmlTextWriterEndElement(tw);
        }
        xmlTextWriterEndElement(tw);
    }
    xmlTextWriterEndElement(tw);
    xmlTextWriterEndDocument(tw);
    xmlFreeTextWriter(tw);
    std::string out(reinterpret_cast<const char*>(xmlBufferContent(buf)), size_t(xmlBufferLength(buf)));
    xmlBufferFree(buf);
    return out;
}

}  // namespace ombra
