#include "tools/analysis/check.h"

#include <algorithm>
#include <cmath>

#include <fmt/format.h>

#include "tools/record/registry.h"
#include "tools/time/instantText.h"

namespace {

constexpr double secondsPerDay = 86400;
constexpr double rolloverSeconds = 1024 * 7 * secondsPerDay;
constexpr unsigned stillCount = 10; // records in a row with the same time, until this is reported
constexpr std::size_t mostFeedBytes = std::size_t{4} << 20;
constexpr std::size_t mostPending = 64;  // names in a feed; the first one stands for further ones
constexpr std::size_t longestText = 400; // more than a message shows

// A sender counts as silent only after so many records, and after so many mean intervals without
// one.
constexpr std::uint64_t regularCount = 10;
constexpr double silentIntervals = 10;

// The address of a sentence; the type of any other record.
std::string nameOf(const record_t& record) {
    const auto* const sentence = std::get_if<const kalo::nmeaFormat_t*>(&record.content);
    return sentence != nullptr ? (*sentence)->field(0)->toString().substr(0, longestText)
                               : std::string(typeNameOf(record));
}

// Whether a difference of times is one of some times 1024 weeks.
bool isRollover(double difference) {
    const double times = std::round(difference / rolloverSeconds);
    return times != 0 && std::fabs(difference - times * rolloverSeconds) <= secondsPerDay;
}

// Without a date as it was sent.
std::string textOf(const sentAt_t& at) {
    if (at.time) {
        return instantText(*at.time);
    }
    const std::string text = instantText(at.timeOfDay); // of the first day of Unix time
    return text.substr(text.find('T') + 1);
}

findingId_t findingOf(fault_t fault) {
    return static_cast<findingId_t>(static_cast<unsigned>(fault) - 1);
}

} // namespace

const findingKind_t findingKinds[findingKindCount] = {
    {"no-start-character", true, "line does not begin as a record"},
    {"no-line-end", true, "line does not end in CR LF"},
    {"bad-checksum-digits", true, "checksum is not hexadecimal"},
    {"checksum-mismatch", true, "checksum does not match"},
    {"no-checksum", true, "checksum is missing (--require-checksum)"},
    {"cut", true, "record is cut off"},
    {"line-too-long", true, "line is longer than 64 KiB"},
    {"not-a-known-record", true, "not a known record"},
    {"nothing-decodes", true, "no value of a motion record decodes"},
    {"time-backwards", true, "time goes backwards"},
    {"time-jump", false, "time jumps forward"},
    {"time-stands-still", false, "time stands still"},
    {"week-rollover", true, "date is off by a multiple of 1024 weeks"},
    {"duplicate", false, "same sentence twice in a row"},
    {"incomplete-group", false, "satellite group lacks a sentence"},
    {"out-of-range", true, "value is outside its physical range"},
    {"position-jump", true, "position jumps"},
    {"valid-without-position", true, "status is valid, but the position is missing"},
    {"missing-checksum", false, "checksum is missing, unlike in other sentences"},
    {"silence", false, "sender stops long before the end"}};

void checker_t::beginInput(const std::string& name, const recordReader_t& reader) {
    m_source = name;
    m_reader = &reader;
    m_senders = senders_t();
    m_senders.beginInput(name);
    m_states.clear();
    m_isPassed = false;
    m_incompleteGroups = 0;
    m_end.reset();
    m_lastDate.reset();
    m_newDate.reset();
    m_lastFix.reset();
    m_feeds.clear();
    m_feedBytes = 0;
}

recordPlace_t checker_t::placeOf(const record_t& record) const {
    return {m_source, record.line, record.offset};
}

finding_t checker_t::findingAt(findingId_t id, const record_t& record, std::string what,
                               std::string detail) const {
    finding_t finding;
    finding.id = id;
    finding.what = std::move(what);
    finding.detail = std::move(detail);
    finding.raw = record.raw.substr(0, longestText);
    finding.first = finding.last = placeOf(record);
    return finding;
}

void checker_t::report(findingId_t id, const record_t& record, std::string what,
                       std::string detail) {
    m_taker.take(findingAt(id, record, std::move(what), std::move(detail)));
}

void checker_t::add(const record_t& record) {
    m_isPassed = false;
    const std::size_t number = m_senders.of(record);
    m_states.resize(m_senders.count());
    state_t& state = m_states[number];
    ++state.count;
    m_place = state.place = placeOf(record);
    if (state.name.empty()) {
        state.name = nameOf(record);
    }
    if (const std::optional<double> moment = momentOf(record)) {
        state.first = state.first ? state.first : moment;
        state.last = moment;
        m_end = moment;
    }
    if (record.fault != fault_t::none) {
        checkMalformed(record);
        return;
    }
    if (record.type == typeOf<satellitesRecord_t>) {
        return;
    }
    if (!m_senders.isOthers(number)) {
        checkTime(record, state);
    }
    checkValues(record);
    checkChecksum(record);
    checkGroups(
        findingAt(findingId_t::incompleteGroup, record, nameOf(record), "found at this sentence"));
}

// Reports the groups of satellites that were given up since the last call.
void checker_t::checkGroups(finding_t finding) {
    finding.count = m_reader->groups().incomplete() - m_incompleteGroups;
    m_incompleteGroups += finding.count;
    if (finding.count > 0) {
        m_taker.take(std::move(finding));
    }
}

void checker_t::pass() {
    m_isPassed = true;
    m_incompleteGroups = m_reader->groups().incomplete();
}

void checker_t::checkMalformed(const record_t& record) {
    std::string detail;
    if (record.fault == fault_t::checksumMismatch) {
        detail = fmt::format("{:02X} stated, {:02X} computed", record.stated, record.computed);
    }
    report(findingOf(record.fault), record, "", detail);
}

void checker_t::checkTime(const record_t& record, state_t& state) {
    if (!record.clue.hasTime) {
        return;
    }
    const sentAt_t at = sentAtOf(record);
    const std::string name = nameOf(record);
    if (record.text == state.text) {
        report(findingId_t::duplicate, record, name, "");
        return;
    }
    state.text = record.text;
    const double step = state.lastTime ? timeBetween(*state.lastTime, at).value_or(0) : 0;
    if (record.instant && checkRollover(record, name)) {
        return;
    }
    // A time that has its day from a date that is off is as wrong as that date, which was reported.
    if (isRollover(step)) {
        const bool isAccepted = m_lastDate && std::fabs(*at.time - *m_lastDate) <= secondsPerDay;
        state.lastTime = isAccepted ? at : state.lastTime;
        return;
    }
    const auto steps = [&] {
        return fmt::format("from {} to {}", ::textOf(*state.lastTime), ::textOf(at));
    };
    if (step < 0) {
        report(findingId_t::timeBackwards, record, name, steps());
    } else if (step > m_options.maxGap) {
        report(findingId_t::timeJump, record, name, steps());
    }
    state.standsStill = state.lastTime && step == 0 ? state.standsStill + 1 : 0;
    if (state.standsStill == stillCount) {
        report(findingId_t::timeStandsStill, record, name, "at " + ::textOf(at));
    }
    state.lastTime = at;
}

// Returns whether the date is off, so that nothing can be said of its neighbours by it.
bool checker_t::checkRollover(const record_t& record, const std::string& name) {
    const double time = record.instant->timestamp;
    const dayRule_t rule = record.instant->rule;
    if (rule == dayRule_t::rollover) {
        report(findingId_t::rollover, record, name, "moved forward to " + instantText(time));
        return false;
    }
    if (rule != dayRule_t::own) {
        return false;
    }
    if (m_lastDate && isRollover(time - *m_lastDate)) {
        // Which date is right shows when the next instant comes.
        const double later = m_newDate ? time - *m_newDate : 0;
        if (later < 1 || later > secondsPerDay) {
            m_newDate = time;
            report(findingId_t::rollover, record, name, "to " + instantText(time));
            return true;
        }
    } else if (record.clue.hasStamp && isRollover(time - record.clue.stamp)) {
        report(findingId_t::rollover, record, name, "to " + instantText(time));
    }
    m_newDate.reset();
    m_lastDate = time;
    return false;
}

void checker_t::checkValues(const record_t& record) {
    readMeasurements(record, m_scratch, m_measured);
    const bool isVoid = m_measured.isVoid();
    if (!isVoid) {
        m_measured.forEach([&](quantity_t quantity, double value) {
            const quantityRow_t& row = rowOf(quantity);
            const double shown = printedValue(quantity, value);
            if (shown < row.least || shown > row.greatest) {
                report(
                    findingId_t::outOfRange, record, nameOf(record) + ' ' + std::string(row.name),
                    fmt::format("{:.6g}{}{}, outside {:g} to {:g}", shown,
                                *row.unit == '\0' ? "" : " ", row.unit, row.least, row.greatest));
            }
        });
    }
    const bool saysValid =
        (m_measured.has(quantity_t::validity) && m_measured[quantity_t::validity] == 'A') ||
        m_measured[quantity_t::quality] > 0;
    if (m_measured.positionRank() < std::size(positionTypes) && saysValid && !isVoid &&
        !m_measured.hasPosition()) {
        report(findingId_t::validWithoutPosition, record, nameOf(record), "");
    }
    checkFix(m_epochs.add(record, m_measured));
}

void checker_t::checkFix(const fix_t* fix) {
    if (fix == nullptr) {
        return;
    }
    if (m_lastFix) {
        const step_t step = stepBetween(*m_lastFix, *fix);
        if (step.isJump(m_options.maxSpeed)) {
            finding_t finding;
            finding.id = findingId_t::positionJump;
            finding.detail = fmt::format("{:.0f} m in {:g} s", step.distance, *step.duration);
            finding.first = finding.last = {m_source, fix->line, fix->offset};
            m_taker.take(std::move(finding));
        }
    }
    m_lastFix = *fix;
}

// Whether there is room for so many further bytes of what is known of the feeds.
bool checker_t::takesFeedBytes(std::size_t count) {
    const bool isTaken = m_feedBytes + count <= mostFeedBytes;
    m_feedBytes += isTaken ? count : 0;
    return isTaken;
}

// Of the sentences before the first one with a checksum, those of one name become one finding when
// that one comes.
void checker_t::checkChecksum(const record_t& record) {
    if (!std::holds_alternative<const kalo::nmeaFormat_t*>(record.content)) {
        return;
    }
    const std::string prefix(record.prefix);
    auto found = m_feeds.find(prefix);
    if (found == m_feeds.end()) {
        constexpr std::size_t withFinding = sizeof(feed_t) + sizeof(finding_t) + 3 * longestText;
        if (!takesFeedBytes(withFinding + prefix.size())) {
            return;
        }
        found = m_feeds.emplace(prefix, feed_t()).first;
    }
    feed_t& feed = found->second;
    if (record.hasChecksum) {
        for (auto& [name, finding] : feed.pending) {
            m_taker.take(std::move(finding));
        }
        feed.pending.clear();
        feed.hasChecksums = true;
        return;
    }
    const std::string name = nameOf(record);
    finding_t finding = findingAt(findingId_t::missingChecksum, record, name, "");
    if (feed.hasChecksums) {
        m_taker.take(std::move(finding));
        return;
    }
    auto place = feed.pending.find(name);
    const bool isNew = place == feed.pending.end();
    if (isNew && !feed.pending.empty() &&
        (feed.pending.size() >= mostPending ||
         !takesFeedBytes(sizeof(finding_t) + 2 * name.size() + finding.raw.size()))) {
        place = feed.pending.begin();
    }
    if (place == feed.pending.end()) {
        feed.pending.emplace(name, std::move(finding));
    } else {
        place->second.last = std::move(finding.last);
        ++place->second.count;
    }
}

void checker_t::endInput() {
    checkFix(m_epochs.finish());
    finding_t group;
    group.id = findingId_t::incompleteGroup;
    group.detail = "at the end of the input";
    group.first = group.last = m_place;
    if (!m_isPassed) { // else the group is of a record that was left out
        checkGroups(std::move(group));
    }
    for (std::size_t i = 0; m_end && i < m_states.size(); ++i) {
        const state_t& state = m_states[i];
        const std::string& type = m_senders[i].type;
        if (state.count < regularCount || !state.last || type == "malformed" ||
            type == satellitesRecord_t::name || m_senders.isOthers(i)) {
            continue;
        }
        const double interval = (*state.last - *state.first) / static_cast<double>(state.count - 1);
        const double silence = *m_end - *state.last;
        if (silence > std::max(m_options.maxGap, silentIntervals * interval)) {
            finding_t finding;
            finding.id = findingId_t::silence;
            finding.what = state.name;
            finding.detail = fmt::format("last at {}, {} before the end", instantText(*state.last),
                                         durationText(silence));
            finding.first = finding.last = state.place;
            m_taker.take(std::move(finding));
        }
    }
}
