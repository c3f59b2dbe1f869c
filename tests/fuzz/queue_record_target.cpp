#include "tests/fuzz/other_json.h"
#include "tests/fuzz/other_xml.h"
#include "tests/fuzz/replies.h"
#include "tests/fuzz/target.h"
#include "till/delivery/delivery.h"
#include "till/store/store.h"

#include <QDir>
#include <QTemporaryDir>

#include <algorithm>
#include <map>

// A queued message on its way to the service. The input holds the message and the reply to it; a message that tells of
// nothing to post never reaches a server.

namespace fuzz {

namespace {

    using till::store::QueueRecord;
    using till::store::RecordState;

    /// A till's store, in memory where the system has a folder there: nothing here is about the disk.
    class OpenStore {
    public:
        OpenStore()
            : folder(QDir(memory()).exists() ? memory() + QStringLiteral("/vantiro-XXXXXX")
                                             : QDir::tempPath() + QStringLiteral("/vantiro-XXXXXX"))
        {
            till::store::open(folder.path());
            QSqlQuery query = till::store::prepare(QStringLiteral("PRAGMA synchronous = OFF"));
            till::store::execute(query);
        }

        ~OpenStore()
        {
            till::store::close();
        }

        /// The one pending message of the store, whatever came before.
        [[nodiscard]] qint64 pendingMessage()
        {
            if (!till::store::queueRecord(id)) {
                QSqlQuery query = till::store::prepare(QStringLiteral(
                    "INSERT INTO queue (queue, message, extra, queued_at) VALUES ('vantiro', '{}', '', '')"));
                till::store::execute(query);
                id = query.lastInsertId().toLongLong();
            } else if (till::store::queueRecord(id)->state != RecordState::pending) {
                till::store::release(id);
            }
            return id;
        }

    private:
        Q_DISABLE_COPY_MOVE(OpenStore)

        [[nodiscard]] static QString memory()
        {
            return QStringLiteral("/dev/shm");
        }

        QTemporaryDir folder;
        qint64 id = 0;
    };

    using Namespaces = std::map<std::string, std::string>;

    /// The namespaces that hold within the element, by prefix.
    [[nodiscard]] Namespaces namespacesOf(const XmlElement& element, Namespaces outer)
    {
        for (const auto& [name, value] : element.attributes) {
            if (name == "xmlns") {
                outer[""] = value;
            } else if (name.starts_with("xmlns:")) {
                outer[name.substr(6)] = value;
            }
        }
        return outer;
    }

    [[nodiscard]] bool isNamed(const XmlElement& element, const Namespaces& within, const std::string& space,
                               const std::string& name)
    {
        const std::size_t colon = element.name.find(':');
        const std::string prefix = colon == std::string::npos ? "" : element.name.substr(0, colon);
        const auto found = within.find(prefix);
        const std::string own = colon == std::string::npos ? element.name : element.name.substr(colon + 1);
        return own == name && (space.empty() || (found != within.end() && found->second == space));
    }

    /// The service has answered to the operation: an envelope whose body begins with the response.
    [[nodiscard]] bool isResponse(const std::string& reply, const std::string& operation)
    {
        const std::string soap = "http://schemas.xmlsoap.org/soap/envelope/";
        std::optional<XmlElement> root = readOtherwise(reply, XmlEncoding::fromTheText);
        for (const char sign : { '_', ' ' }) { // a service may answer in a charset of its own
            root = root ? root : readOtherwise(inAscii(reply, sign), XmlEncoding::utf8);
        }
        if (!root) {
            return false;
        }
        const Namespaces ofRoot = namespacesOf(*root, {});
        if (!isNamed(*root, ofRoot, soap, "Envelope")) {
            return false;
        }
        for (const XmlElement& part : root->children) {
            const Namespaces ofPart = namespacesOf(part, ofRoot);
            if (isNamed(part, ofPart, soap, "Body") && !part.children.empty()) {
                const XmlElement& answer = part.children.front();
                return isNamed(answer, namespacesOf(answer, ofPart), "", operation + "Response");
            }
        }
        return false;
    }

    void checkDelivered(const std::string& message, const HostileReply& reply)
    {
        const nlohmann::json read = otherJson(message);
        require(read.is_object(), "a message that is no JSON was posted");
        const nlohmann::json operation = read.value("request", nlohmann::json());
        require(operation.is_string() && !operation.get<std::string>().empty(), "a message without an operation");
        require(reply.status >= 200 && reply.status <= 299, "a message left the queue for a status of failure");
        require(isResponse(reply.body.toStdString(), operation.get<std::string>()),
                "a message left the queue that the service has not answered");
    }

    [[nodiscard]] bool isDamaged(const std::string& message)
    {
        return otherJson(message).is_discarded();
    }

    void checkKept(qint64 id, const std::string& message, qsizetype posts)
    {
        constexpr qsizetype longestReason = 400;
        const std::optional<QueueRecord> kept = till::store::queueRecord(id);
        require(kept.has_value(), "a message was dropped that was not delivered");
        require(kept->state == RecordState::pending || !kept->reason.isEmpty(), "a message stepped aside in silence");
        const bool damaged = kept->state == RecordState::damaged;
        require(damaged == (posts == 0), "a damaged message was posted, or a good one not");
        require(!isDamaged(message) || kept->state == RecordState::damaged, "a message that is no JSON was read");
        require(kept->reason.size() <= longestReason && !kept->reason.contains(u'\n'), "a reason that is no line");
    }

} // namespace

void readQueueRecord(std::string_view input)
{
    static OpenStore store;
    const std::vector<std::string_view> parts = partsOf(input);
    const std::string message(parts.front());
    const HostileReply reply = parts.size() > 1 ? replyOf(parts[1]) : HostileReply();

    till::Delivery delivery({ .random = [] { return 0.5; } });
    QueueRecord record;
    record.id = store.pendingMessage();
    record.message = QByteArray::fromStdString(message);
    HostileServer server({ reply });
    bool delivered = false;
    timed([&] { delivered = delivery.send(record); });
    if (delivered) {
        require(!till::store::queueRecord(record.id), "a delivered message is still in the queue");
        checkDelivered(message, reply);
    } else {
        checkKept(record.id, message, server.posts());
    }
}

} // namespace fuzz
