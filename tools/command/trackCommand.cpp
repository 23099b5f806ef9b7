#include "tools/command/trackCommand.h"

#include <memory>

#include <fmt/format.h>

#include "tools/command/readInput.h"
#include "tools/time/instantText.h"

namespace {

double degrees(const fix_t& fix, quantity_t quantity) {
    return printedValue(quantity, fix.values[quantity]);
}

// Longitude and latitude as numbers with seven decimals, which are centimetres.
std::string placeText(const fix_t& fix, const char* pattern) {
    return fmt::format(fmt::runtime(pattern), degrees(fix, quantity_t::longitude),
                       degrees(fix, quantity_t::latitude));
}

// Writes a track as it comes, line by line.
class trackWriter_t {
public:
    explicit trackWriter_t(buffer_t& out) : m_out(out) {}
    virtual ~trackWriter_t() = default;

    virtual void begin() = 0;
    virtual void point(const fix_t& fix) = 0;
    virtual void endLine() = 0;
    virtual void end() = 0;

protected:
    void write(std::string_view text) { m_out.append(text); }

private:
    buffer_t& m_out;
};

// What is said of a point besides its place and time.
struct detail_t {
    quantity_t quantity;
    const char* name;
};
constexpr detail_t details[] = {{quantity_t::quality, "quality"},
                                {quantity_t::satCount, "satCount"},
                                {quantity_t::hdop, "hdop"},
                                {quantity_t::speedOverGround, "speedOverGround"},
                                {quantity_t::courseOverGround, "courseOverGround"},
                                {quantity_t::heading, "heading"},
                                {quantity_t::depth, "depth"}};

// A feature for each point, and one for each line.
class geojsonWriter_t : public trackWriter_t {
public:
    using trackWriter_t::trackWriter_t;

    void begin() override { write("{\"type\":\"FeatureCollection\",\"features\":["); }

    void point(const fix_t& fix) override {
        const std::string place = placeText(fix, "[{:.7f},{:.7f}]");
        beginFeature("Point");
        write(place + "},\"properties\":{");
        write(fmt::format("\"line\":{}", m_lines));
        if (fix.time) {
            write(fmt::format(",\"time\":\"{}\"", instantText(*fix.time)));
        }
        if (fix.values.has(quantity_t::altitude)) {
            write(fmt::format(",\"altitude\":{:.10g}", fix.values[quantity_t::altitude]));
        }
        for (const detail_t& detail : details) {
            if (fix.values.has(detail.quantity)) {
                write(fmt::format(",\"{}\":{:.10g}", detail.name, degrees(fix, detail.quantity)));
            }
        }
        write("}}");
        m_places += (m_places.empty() ? "" : ",") + place;
        ++m_points;
    }

    void endLine() override {
        if (m_points > 1) { // one point makes no line
            beginFeature("LineString");
            write(fmt::format("[{}]}},\"properties\":{{\"line\":{}}}}}", m_places, m_lines));
        }
        m_places.clear();
        m_points = 0;
        ++m_lines;
    }

    void end() override { write("\n]}\n"); }

private:
    void beginFeature(const char* type) {
        write(m_isFirst ? "\n" : ",\n");
        write(fmt::format("{{\"type\":\"Feature\",\"geometry\":{{\"type\":\"{}\",\"coordinates\":",
                          type));
        m_isFirst = false;
    }

    bool m_isFirst = true;
    std::uint64_t m_lines = 0;
    std::uint64_t m_points = 0; // of the line
    std::string m_places;
};

// GPX 1.1. What its points have no element for stands in their extensions.
class gpxWriter_t : public trackWriter_t {
public:
    using trackWriter_t::trackWriter_t;

    void begin() override {
        write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<gpx version=\"1.1\" creator=\"kalo " KALO_VERSION "\""
              " xmlns=\"http://www.topografix.com/GPX/1/1\" xmlns:kalo=\"urn:kalo:track\">\n"
              "<trk>\n");
    }

    void point(const fix_t& fix) override {
        write(m_isOpen ? "" : "<trkseg>\n");
        m_isOpen = true;
        write(placeText(fix, "<trkpt lon=\"{:.7f}\" lat=\"{:.7f}\">"));
        const auto element = [&](quantity_t quantity, const char* name, const char* pattern) {
            if (fix.values.has(quantity)) {
                write(fmt::format("<{0}>{1}</{0}>", name,
                                  fmt::format(fmt::runtime(pattern), degrees(fix, quantity))));
            }
        };
        element(quantity_t::altitude, "ele", "{:.10g}");
        if (fix.time) {
            write("<time>" + instantText(*fix.time) + "</time>");
        }
        if (const char* const name = fixName(fix)) {
            write(fmt::format("<fix>{}</fix>", name));
        }
        element(quantity_t::satCount, "sat", "{:.0f}");
        element(quantity_t::hdop, "hdop", "{:.10g}");
        write("<extensions>");
        for (const detail_t& detail : details) {
            const bool isElement =
                detail.quantity == quantity_t::satCount || detail.quantity == quantity_t::hdop;
            if (!isElement) {
                element(detail.quantity, (std::string("kalo:") + detail.name).c_str(), "{:.10g}");
            }
        }
        write("</extensions></trkpt>\n");
    }

    void endLine() override {
        write(m_isOpen ? "</trkseg>\n" : "");
        m_isOpen = false;
    }

    void end() override { write("</trk>\n</gpx>\n"); }

private:
    // Two of the qualities of GGA are among the words of GPX.
    static const char* fixName(const fix_t& fix) {
        constexpr double differential = 2;
        constexpr double precise = 3;
        const double quality = fix.values[quantity_t::quality];
        return quality == differential ? "dgps" : quality == precise ? "pps" : nullptr;
    }

    bool m_isOpen = false;
};

// KML 2.2: a placemark with a line, or with its only point.
class kmlWriter_t : public trackWriter_t {
public:
    using trackWriter_t::trackWriter_t;

    void begin() override {
        write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<kml xmlns=\"http://www.opengis.net/kml/2.2\">\n<Document>\n");
    }

    void point(const fix_t& fix) override {
        m_first = m_first ? m_first : fix.time;
        m_last = fix.time;
        m_places += placeText(fix, "{:.7f},{:.7f}\n");
        ++m_points;
    }

    void endLine() override {
        if (m_points == 0) {
            return;
        }
        const char* const shape = m_points > 1 ? "LineString" : "Point";
        write("<Placemark>");
        if (m_first && m_last) {
            write(fmt::format("<TimeSpan><begin>{}</begin><end>{}</end></TimeSpan>",
                              instantText(*m_first), instantText(*m_last)));
        }
        write(fmt::format("\n<{0}><coordinates>\n{1}</coordinates></{0}></Placemark>\n", shape,
                          m_places));
        m_places.clear();
        m_points = 0;
        m_first.reset();
    }

    void end() override { write("</Document>\n</kml>\n"); }

private:
    std::string m_places;
    std::uint64_t m_points = 0;
    std::optional<double> m_first;
    std::optional<double> m_last;
};

std::unique_ptr<trackWriter_t> writerOf(trackFormat_t format, buffer_t& out) {
    switch (format) {
    case trackFormat_t::gpx: return std::make_unique<gpxWriter_t>(out);
    case trackFormat_t::kml: return std::make_unique<kmlWriter_t>(out);
    case trackFormat_t::geojson: break;
    }
    return std::make_unique<geojsonWriter_t>(out);
}

class trackConsumer_t : public recordConsumer_t {
public:
    trackConsumer_t(const trackCommandOptions_t& options, trackWriter_t& writer)
        : m_thinning(
              options.thinning, [&writer](const fix_t& fix) { writer.point(fix); },
              [&writer] { writer.endLine(); }) {}

    void beginInput(const std::string& /*name*/, const recordReader_t& /*reader*/) override {}

    void take(const record_t& record) override {
        if (record.fault == fault_t::none) {
            readMeasurements(record, m_scratch, m_measured);
            add(m_epochs.add(record, m_measured));
        }
    }

    void endInput(const recordReader_t& /*reader*/) override {
        add(m_epochs.finish());
        m_thinning.endLine();
    }

private:
    void add(const fix_t* fix) {
        if (fix != nullptr) {
            m_thinning.add(*fix);
        }
    }

    thinning_t m_thinning;
    scratch_t m_scratch;
    measurements_t m_measured;
    epochs_t m_epochs;
};

} // namespace

int trackCommand(const trackCommandOptions_t& options) {
    output_t output(options.output, options.files);
    const std::unique_ptr<trackWriter_t> writer = writerOf(options.format, output.buffer());
    trackConsumer_t consumer(options, *writer);
    writer->begin();
    const bool areRead = readRecords(options.files, options.read, output, consumer);
    writer->end();
    return finish(output, areRead ? 0 : exitFailure, areRead);
}
