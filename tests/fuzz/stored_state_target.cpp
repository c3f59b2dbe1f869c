#include "front/vantiro.h"
#include "host/framework/save_to_file_logic.h"
#include "tests/fuzz/other_json.h"
#include "tests/fuzz/other_xml.h"
#include "tests/fuzz/replies.h"
#include "tests/fuzz/target.h"
#include "till/document/cheque_contents.h"
#include "till/store/document_json.h"


// A cheque that comes back after a crash: the document from its stored text, then the plug-in's state from it.
// The input is the stored text, or what plug-ins have stored with it.

namespace fuzz {

namespace {

    /// Takes the place of the till's store.
    class NoSaves : public SaveToFileLogic {
    public:
        NoSaves()
        {
            MockFactory<SaveToFileLogic>::mocked = this;
        }

        ~NoSaves() override
        {
            MockFactory<SaveToFileLogic>::mocked = nullptr;
        }

        void save(const QSharedPointer<AbstractDocument>&, const QString&) override { }

    private:
        Q_DISABLE_COPY_MOVE(NoSaves)
    };

    [[nodiscard]] std::string storedText(std::string_view input)
    {
        if (input.find("\"identity\"") != std::string_view::npos) {
            return std::string(input);
        }
        constexpr std::string_view none = R"("pluginValues":{})";
        static const std::string sale = till::toJson(saleWithCard()).toStdString();
        const std::size_t at = sale.find(none);
        return sale.substr(0, at) + R"("pluginValues":)" + std::string(input) + sale.substr(at + none.size());
    }

    [[nodiscard]] QSharedPointer<AbstractDocument> documentOf(const QByteArray& text)
    {
        QSharedPointer<AbstractDocument> document;
        try {
            timed([&] { document = till::documentFromJson(text); });
        } catch (const till::DamagedDocument&) {
            return nullptr;
        }
        return document;
    }

    void checkDocument(AbstractDocument& document, const nlohmann::json& stored)
    {
        require(document.getDocumentIdentity().toStdString() == stored.at("identity"), "the document of another name");
        require(document.getChequeNumber() == stored.at("head").at("number"), "the cheque of another number");
        const nlohmann::json& lines = stored.at("lines");
        const QList<QSharedPointer<GoodsItem>> read = document.getGoodsItems();
        require(read.size() == static_cast<qsizetype>(lines.size()), "another number of lines");
        for (std::size_t i = 0; i < lines.size(); ++i) {
            const GoodsItem& line = *read.at(static_cast<qsizetype>(i));
            require(line.getPrice() == lines[i].at("price").get<double>(), "a line of another price");
            require(line.getQuantity() == lines[i].at("quantity").get<double>(), "a line of another quantity");
        }
    }

    /// Restores the plug-in's state from the document and stores it there again, as the next step of the cheque would.
    void takeUp(Vantiro& plugin, const QSharedPointer<AbstractDocument>& document)
    {
        const NoSaves saves;
        plugin.setDocument(document);
        bool restored = false;
        timed([&] { restored = plugin.restoreLoyaltySystem(); });
        require(restored, "a state that was not restored");
        plugin.updatePluginData(document, plugin.isOfflineMode(document));
        plugin.updateCouponsPluginData(document);
    }

    void checkCheque(Vantiro& plugin, const QSharedPointer<AbstractDocument>& document)
    {
        const OpenClient client;
        const QDomDocument open = client.buildXmlCheck(document, {}, {}, plugin.getDiscountImpacts());
        const QDomDocument closed = client.buildAccrualXmlCheck(open, plugin.getBonusImpactsForSpend(), {}, {}, {});
        for (const QDomDocument& cheque : { open, closed }) {
            const std::string text = client.getXmlCheckString(cheque).toStdString();
            const std::optional<XmlElement> root = readOtherwise(text, XmlEncoding::utf8);
            require(root && root->name == "Cheque", "the cheque of a restored document is not XML");
        }
    }

} // namespace

void readStoredState(std::string_view input)
{
    const std::string text = storedText(input);
    const QSharedPointer<AbstractDocument> document = documentOf(QByteArray::fromStdString(text));
    if (!document) {
        return;
    }
    const nlohmann::json stored = otherJson(text);
    require(!stored.is_discarded(), "a document of a text that is not JSON");
    checkDocument(*document, stored);

    // What has been read can be written, and then stays as it is: the till goes on with such a cheque.
    const QByteArray first = till::toJson(document);
    const QSharedPointer<AbstractDocument> again = documentOf(first);
    require(!again.isNull(), "a document that is written and cannot be read");
    require(till::toJson(again) == first, "a document that changes by being read");

    Vantiro plugin;
    takeUp(plugin, document);
    checkCheque(plugin, document);
    const QByteArray kept = till::toJson(document);
    made(static_cast<std::size_t>(kept.size())); // each entry of a list comes out as a whole impact
    const QSharedPointer<AbstractDocument> restarted = documentOf(kept);
    require(!restarted.isNull(), "a state that is stored and cannot be read");
    Vantiro next;
    takeUp(next, restarted);
    require(till::toJson(restarted) == kept, "a state that changes by being restored");
}

} // namespace fuzz
