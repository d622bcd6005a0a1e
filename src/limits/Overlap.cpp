#include "limits/Overlap.h"

namespace vantor {

namespace {

bool inside(int value, Window window) {
    return value >= window.low && value <= window.high;
}

bool coinsOverlap(int a, int b, const LimitsState& limits, const SegmentView& view) {
    for (int parameter = 0; parameter < view.paramCount; ++parameter) {
        const Window first = channelWindow(limits, a, parameter);
        Window second = channelWindow(limits, b, parameter);
        const bool bothOff = first.off() && second.off();
        if (view.rules.reversedIsEmpty && (first.low >= first.high || second.low >= second.high)) {
            second = {};
        }
        const bool overlap = !second.off() && windowsMeet(first, second);
        const bool neither = parameter == view.rules.optionalParameter && bothOff;
        if (!overlap && !neither) return false;
    }
    return true;
}

bool slugOverlaps(int channel, int slugRow, const LimitsState& limits, const CoinTable& table,
                  const SegmentView& view) {
    for (int parameter = 0; parameter < view.paramCount; ++parameter) {
        Window window = channelWindow(limits, channel, parameter);
        const bool unused = parameter == view.rules.optionalParameter && window.off();
        if (window.low >= window.high) window = {};
        const Window slug = itemWindow(table, slugRow, parameter);
        const bool overlap = !window.off() && !slug.off() && windowsMeet(window, slug);
        if (!overlap && !unused) return false;
    }
    return true;
}

}  // namespace

bool windowsMeet(Window one, Window other) {
    const auto contains = [](Window outer, Window inner) {
        return outer.low <= inner.low && outer.high >= inner.high;
    };
    // A window whose low stands above its high has no value inside and may yet be contained.
    return inside(other.low, one) || inside(other.high, one) || contains(other, one) ||
           contains(one, other);
}

OverlapMarks findOverlaps(const LimitsState& limits, const CoinTable& table,
                          const SegmentView& view) {
    const int first = view.rules.displayedSegmentOnly ? view.firstChannel : 1;
    const int last = view.rules.displayedSegmentOnly
                         ? view.firstChannel + view.channelsPerSegment - 1
                         : view.channelCount;
    OverlapMarks marks;
    for (int a = first; a < last; ++a) {
        for (int b = a + 1; b <= last; ++b) {
            if (!coinsOverlap(a, b, limits, view)) continue;
            marks.coinOverlap[a] = true;
            marks.coinOverlap[b] = true;
        }
    }
    for (int channel = first; channel <= last; ++channel) {
        for (int slug = 1; slug <= limits.slugCount; ++slug) {
            if (!slugOverlaps(channel, limits.slugList[slug], limits, table, view)) continue;
            marks.slugOverlap[channel] = true;
            marks.slug[slug] = true;
        }
    }
    return marks;
}

}  // namespace vantor
