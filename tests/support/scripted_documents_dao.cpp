#include "tests/support/scripted_documents_dao.h"

#include <utility>

ScriptedDocumentsDao::ScriptedDocumentsDao()
    : former(std::exchange(Singleton<DocumentsDao>::instance, this))
{
}

ScriptedDocumentsDao::~ScriptedDocumentsDao()
{
    Singleton<DocumentsDao>::instance = former;
}

void ScriptedDocumentsDao::add(const QVariant& key, const QSharedPointer<AbstractDocument>& document)
{
    documents.append({ key, document });
}

QStringList ScriptedDocumentsDao::questions() const
{
    return asked;
}

QSharedPointer<AbstractDocument> ScriptedDocumentsDao::getDocument(const QVariant& key, int flags)
{
    asked.append(QStringLiteral("%1 flags %2").arg(key.toString(), QString::number(flags)));
    for (const auto& [known, document] : documents) {
        if (known.metaType() == key.metaType() && known == key) {
            return document;
        }
    }
    return nullptr;
}
