#include "tests/faults/expected_outcomes.h"

namespace faults {

const QList<ExpectedFault>& expectedFaults()
{
    using enum Exchange;
    using enum Ping;
    using enum Wait;
    constexpr auto waits = Delivery::waits;
    constexpr auto wrong = Delivery::wrong;
    constexpr auto notTaken = Delivery::refused;
    constexpr auto delivered = Delivery::delivered;

    static const QList<ExpectedFault> table {
        // There is no whole request yet.
        { "Refused", unasked, down, waits },
        { "Deaf", unasked, down, waits, timeout },
        { "ClosedOnConnection", unasked, down, waits },
        { "ResetOnConnection", unasked, down, waits },
        { "ClosedInTheRequest", unasked, down, waits },
        { "ResetInTheRequest", unasked, down, waits },
        { "TlsSound", answered, up, delivered },
        { "TlsOfAnotherHost", unasked, down, waits },
        { "TlsExpired", unasked, down, waits },
        { "TlsSelfSigned", unasked, down, waits },
        { "TlsOfUnknownAuthority", unasked, down, waits },
        { "TlsRefused", unasked, down, waits },
        { "TlsDeaf", unasked, down, waits, timeout },
        { "PlainAnswerOnATlsPort", unasked, down, waits },
        { "TlsOnAPlainPort", unasked, down, waits },
        { "TlsAlertOnAPlainPort", lost, down, waits },

        // The reply breaks off.
        { "SilentAfterTheRequest", lost, down, waits, timeout },
        { "ClosedAfterTheRequest", lost, down, waits },
        { "ResetAfterTheRequest", lost, down, waits },
        { "ClosedInTheStatusLine", lost, down, waits },
        { "ResetInTheStatusLine", lost, down, waits },
        { "ClosedInTheHead", lost, down, waits },
        { "ResetInTheHead", lost, down, waits },
        { "SilentInTheHead", lost, down, waits, timeout },
        { "ClosedBeforeTheBody", lost, down, waits },
        { "ResetBeforeTheBody", lost, down, waits },
        { "ClosedInTheBody", lost, down, waits },
        { "ResetInTheBody", lost, down, waits },
        { "SilentInTheBody", lost, down, waits, timeout },
        { "ClosedBeforeTheLastByte", lost, down, waits },
        { "ResetBeforeTheLastByte", lost, down, waits },

        // The length is not what is told.
        { "LengthTooGreatThenClosed", lost, down, waits },
        { "LengthTooGreatThenSilent", lost, down, waits, timeout },
        { "LengthTooSmall", unusable, up, wrong },
        { "LengthOfNothing", unusable, up, wrong },
        { "LengthNegative", lost, down, waits },
        { "LengthNoNumber", lost, down, waits },
        { "LengthsThatDiffer", lost, down, waits },
        { "NoLength", answered, up, delivered },
        { "NoLengthClosedInTheBody", unusable, up, wrong },
        { "NoLengthResetInTheBody", lost, down, waits },
        { "MoreThanTheLength", answered, up, delivered },
        { "TwoReplies", answered, up, delivered },
        { "Chunked", answered, up, delivered },
        { "ChunksWithoutAnEndThenClosed", lost, down, waits },
        { "ChunksWithoutAnEndThenSilent", lost, down, waits, timeout },
        { "ChunkCut", lost, down, waits },
        { "ChunkSizeNoNumber", lost, down, waits },
        { "ChunkSizeTooSmall", lost, down, waits },
        { "ChunksUnderAnUnknownCoding", lost, down, waits },

        // The reply takes its time, or is not the only one.
        { "DrippingInTime", answered, up, delivered },
        { "DrippingBodyTooSlow", lost, down, waits, timeout },
        { "DrippingHeadTooSlow", lost, down, waits, timeout },
        { "Continue", answered, up, delivered },
        { "ProcessingAndEarlyHints", answered, up, delivered },
        { "ContinueThenClosed", lost, down, waits },
        { "ContinueForEver", lost, down, waits, timeout },
        { "SwitchingProtocols", lost, down, waits },

        // Something in between answers. A redirection is not followed.
        { "Status301", rejected, down, waits },
        { "Status302", rejected, down, waits },
        { "Status303", rejected, down, waits },
        { "Status307", rejected, down, waits },
        { "Status308", rejected, down, waits },
        { "Status400", rejected, down, notTaken },
        { "Status401", rejected, down, waits },
        { "Status403", rejected, down, waits },
        { "Status404", rejected, down, waits },
        { "Status407", rejected, down, waits },
        { "Status408", rejected, down, waits },
        { "Status413", rejected, down, notTaken },
        { "Status429", rejected, down, waits },
        { "Status502", rejected, down, waits },
        { "Status503", rejected, down, waits },
        { "Status503WithAFault", rejected, down, waits },
        { "Status504", rejected, down, waits },
        { "Status599", rejected, down, waits },
        { "Status999", rejected, down, waits },

        // A success that is none. A delivery looks at the whole reply: a response that it can read is the service's
        // own.
        { "Status204", unusable, up, wrong },
        { "Status206OfAPart", unusable, up, wrong },
        { "Status206OfAll", answered, up, delivered },
        { "EmptyReply", unusable, up, wrong },
        { "Page", unusable, up, wrong },
        { "WellFormedPage", foreign, up, wrong },
        { "FaultWithStatus200", refused, up, notTaken },
        { "OtherCharset", unusable, up, delivered },
        { "UnknownCharset", unusable, up, delivered },
        { "Utf16", answered, up, delivered },
        { "DocumentType", unusable, up, wrong },
        { "ZeroByte", unusable, up, wrong },
        { "DeeplyNested", unusable, up, wrong },
        { "GzipThatNobodyAskedFor", unusable, up, wrong },
        { "GiantByItsLength", unusable, up, wrong },
        { "GiantWithoutEnd", unusable, up, wrong },
        { "HeadWithoutEnd", unusable, up, wrong },

        // The service refuses, by its rules or nearly so.
        { "Fault", refused, down, notTaken },
        { "FaultUnderAnotherPrefix", foreign, down, notTaken },
        { "Status500WithTheAnswer", answered, down, wrong },
        { "Status500WithAPage", unusable, down, wrong },
        { "Status500Empty", unusable, down, wrong },

        // No HTTP, or none of this version.
        { "Http09", lost, down, waits },
        { "Http2StatusLine", lost, down, waits },
        { "StatusOfTwoDigits", lost, down, waits },
        { "HeaderThatIsNone", lost, down, waits },
        { "Noise", lost, down, waits },
        { "MailServer", lost, down, waits },
    };
    return table;
}

}
