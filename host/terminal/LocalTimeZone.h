#pragma once

namespace epg {

class Environment;

/// Throws a `Refusal` when the system does not know the zone that TZ names: it would silently take UTC. Throws one also
/// when the zone, be it TZ's or the machine's own, counts leap seconds, which the system's clock does not.
///
/// TZ may be the name of a zone's file ("Europe/Berlin", in TZDIR when that is set, or an absolute path), a rule
/// ("CET-1CEST,M3.5.0,M10.5.0/3") or empty (UTC), each with or without a colon in front.
void refuseUnknownTimeZone(Environment& environment);

}  // namespace epg
