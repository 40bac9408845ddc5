#pragma once

namespace epg {

class Environment;

/// Throws a `Refusal` where TZ is set and means nothing to the system, which would then tell all times in UTC without
/// a word, and where the zone (TZ's, or the machine's own) counts leap seconds, which the system's clock does not. TZ
/// may name a zone's file ("Europe/Berlin", below TZDIR where that is set, or an absolute path), be a rule
/// ("CET-1CEST,M3.5.0,M10.5.0/3") or empty (UTC), each with or without a colon in front.
void refuseUnknownTimeZone(Environment& environment);

}  // namespace epg
