// Names every type of the contract in a function of its own, so that the debug information of this one library
// describes them all: sizes, fields, bases, slots, values. A type that is gone is a function that does not compile.
#include "host/document/abstract_document.h"
#include "host/document/back_by_sale_document.h"
#include "host/document/coupon.h"
#include "host/document/document_bonus_record.h"
#include "host/document/document_card_record.h"
#include "host/document/document_impact.h"
#include "host/document/document_impact_detail.h"
#include "host/document/enumerations.h"
#include "host/document/goods_item.h"
#include "host/document/money_item.h"
#include "host/document/plugin_data.h"
#include "host/document/position.h"
#include "host/facilities/config.h"
#include "host/facilities/current_time.h"
#include "host/facilities/exceptions.h"
#include "host/facilities/finally.h"
#include "host/facilities/log_manager.h"
#include "host/facilities/logger.h"
#include "host/facilities/rest_client.h"
#include "host/facilities/serder.h"
#include "host/facilities/tr.h"
#include "host/framework/action.h"
#include "host/framework/action_handler.h"
#include "host/framework/action_trigger.h"
#include "host/framework/activity_notifier.h"
#include "host/framework/base_activity_listener.h"
#include "host/framework/basic_loyalty_system.h"
#include "host/framework/basic_plugin.h"
#include "host/framework/card_number.h"
#include "host/framework/coupon_logic.h"
#include "host/framework/db_queue_broker.h"
#include "host/framework/dialog.h"
#include "host/framework/document_watcher.h"
#include "host/framework/documents_dao.h"
#include "host/framework/event.h"
#include "host/framework/loyalty_system_option.h"
#include "host/framework/save_to_file_logic.h"
#include "host/framework/session.h"
#include "host/framework/task.h"
#include "host/framework/text_printer.h"

template <class Type>
VANTIRO_HOST_API void name(Type*)
{
}

template void name(AbstractDocument*);
template void name(BackBySaleDocument*);
template void name(SaleDocumentSource*);
template void name(Coupon*);
template void name(DocumentBonusRecord*);
template void name(DocumentCardRecord*);
template void name(DocumentImpact*);
template void name(DiscountImpact*);
template void name(BonusImpact*);
template void name(DocumentImpactDetail*);
template void name(GoodsItem*);
template void name(MoneyItem*);
template void name(PluginData*);
template void name(Position*);
template void name(EDiscountObject::type*);
template void name(EDiscountType::type*);
template void name(EDiscountMode::type*);
template void name(EImpactSource::source*);
template void name(ECoupon::Type*);
template void name(ECardNumberType*);
template void name(EDocumentType::type*);

template void name(Config*);
template void name(CurrentTime*);
template void name(BasicException*);
template void name(DocumentException*);
template void name(CouponException*);
template void name(CouponAddException*);
template void name(Finally*);
template void name(Log4Qt::LogManager*);
template void name(Log4Qt::Logger*);
template void name(RestClient*);
template void name(serder::details::Strategy*);
template void name(tr::Tr*);

template void name(control::Action*);
template void name(control::EActionType*);
template void name(EContext::Code*);
template void name(EContext::Result*);
template void name(ActionHandler*);
template void name(ActionTrigger*);
template void name(ActionTrigger::Order*);
template void name(ActionTrigger::Result*);
template void name(ActionTrigger::Priority*);
template void name(ActivityNotifier*);
template void name(BaseActivityListener*);
template void name(BasicLoyaltySystem*);
template void name(LoyaltySystemOption*);
template void name(BasicPlugin*);
template void name(loyalty::CardNumberInputData*);
template void name(CardNumberResult*);
template void name(CouponLogic*);
template void name(DBQueueBroker*);
template void name(Dialog*);
template void name(core::InputForm*);
template void name(core::BasicDialog::Result*);
template void name(DocumentWatcher*);
template void name(DocumentsDao*);
template void name(Event*);
template void name(EActivityListener::Event*);
template void name(SaveToFileLogic*);
template void name(Session*);
template void name(ModifiersContainer*);
template void name(BasicTask*);
template void name(CustomTask*);
template void name(TaskResult*);
template void name(TextPrinter*);
