#include "model/CProductList.h"

#include "model/CProduct.h"
#include "model/CXmlSection.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <utility>
#include <vector>

CProductList::~CProductList()
{
    Clear();
}

CProduct* CProductList::Add(QString name)
{
    auto* product = new CProduct;
    product->SetName(name);
    m_list.append(product);
    if (m_bByNameValid && !m_byName.contains(name))
        m_byName.insert(name, product);
    return product;
}

CProduct* CProductList::GetByIndex(int index) const
{
    return index >= 0 && index < m_list.size() ? m_list.at(index) : nullptr;
}

CProduct* CProductList::GetByName(const QString& name) const
{
    // The settings name every product: a scan per name would make reading them quadratic.
    if (!m_bByNameValid) {
        m_byName.clear();
        m_byName.reserve(m_list.size());
        for (CProduct* product : m_list)
            if (!m_byName.contains(product->GetName()))
                m_byName.insert(product->GetName(), product);
        m_bByNameValid = true;
    }
    return m_byName.value(name, nullptr);
}

void CProductList::Clear()
{
    qDeleteAll(m_list);
    m_list.clear();
    m_pCurrent = nullptr;
    m_byName.clear();
    m_bByNameValid = false;
}

template <typename Pred> void CProductList::DropProducts(Pred drop)
{
    // One pass that keeps the order of the rest; removing one at a time would be quadratic.
    QList<CProduct*> kept;
    kept.reserve(m_list.size());
    QList<CProduct*> dropped;
    for (CProduct* product : qAsConst(m_list)) {
        if (!drop(product)) {
            kept.append(product);
            continue;
        }
        if (product == m_pCurrent)
            m_pCurrent = nullptr;
        dropped.append(product);
    }
    if (dropped.isEmpty())
        return;
    m_list = kept;
    m_bByNameValid = false;
    // From the last to the first, as they were always deleted.
    for (int i = dropped.size() - 1; i >= 0; --i)
        delete dropped.at(i);
}

void CProductList::InitBase(QXmlStreamReader& xml)
{
    parseProducts(xml, true);
    // Only the X-Plane products are served on this platform.
    DropProducts([](const CProduct* product) {
        const QString category = product->GetCategoryName();
        return category != QLatin1String("X-Plane 10") && category != QLatin1String("X-Plane 11");
    });
    SortList();
}

void CProductList::InitProp(QXmlStreamReader& xml)
{
    parseProducts(xml, false);
    // The settings may move a product into a category that is not served. Only these exact
    // names are dropped ("Prepar3D" without a version); kept so.
    DropProducts([](const CProduct* product) {
        const QString category = product->GetCategoryName();
        return category == QLatin1String("FSX") || category == QLatin1String("FS2004") ||
               category == QLatin1String("Prepar3D");
    });
}

void CProductList::SortList()
{
    // The names beside the pointers, so that a comparison does not go through the product.
    std::vector<std::pair<QString, CProduct*>> keyed;
    keyed.reserve(size_t(m_list.size()));
    for (CProduct* product : qAsConst(m_list))
        keyed.emplace_back(product->GetName(), product);
    const auto before = [](const std::pair<QString, CProduct*>& a, const std::pair<QString, CProduct*>& b) {
        return a.first < b.first;
    };
    // One bubble pass: equal names never swap, so their catalogue order is kept. A catalogue that
    // is already in order (the usual case) is done after this single pass.
    bool swapped = false;
    for (size_t i = 0; i + 1 < keyed.size(); ++i) {
        if (before(keyed[i + 1], keyed[i])) {
            std::swap(keyed[i], keyed[i + 1]);
            swapped = true;
        }
    }
    if (!swapped)
        return;
    m_bByNameValid = false;
    // Further bubble passes would take quadratic time on a large shuffled catalogue. A stable
    // merge sort on the same comparison ends in exactly the order the remaining passes would
    // reach: both are stable, and a stable order under one comparison is unique.
    std::stable_sort(keyed.begin(), keyed.end(), before);
    for (size_t i = 0; i < keyed.size(); ++i)
        m_list[int(i)] = keyed[i].second;
}

void CProductList::parseProducts(QXmlStreamReader& xml, bool bBase)
{
    static const QString section = QStringLiteral("products");
    // The current token is looked at before moving on, so that an element right after the
    // section's start tag is not skipped.
    while (!CXmlSection::AtSectionEnd(xml, section)) {
        // A datasets token, start or end, also ends the products.
        if (xml.name() == QLatin1String("datasets"))
            break;
        if (!xml.isStartElement()) {
            xml.readNext();
            continue;
        }
        const auto name = xml.name();
        if (name == QLatin1String("name")) {
            xml.readNext();
            parseProductName(xml, bBase);
        } else if (name == QLatin1String("dataset")) {
            xml.readNext();
            parseProductDataset(xml);
        } else if (name == QLatin1String("product_path")) {
            xml.readNext();
            parseProductProductPath(xml);
        } else if (name == QLatin1String("registry_key")) {
            xml.readNext();
            parseProductRegistryKey(xml);
        } else if (name == QLatin1String("install_path")) {
            xml.readNext();
            parseProductInstallPath(xml);
        } else if (name == QLatin1String("cycle_info_path")) {
            xml.readNext();
            parseProductCycleInfoPath(xml);
        } else if (name == QLatin1String("remove_file")) {
            xml.readNext();
            parseProductRemoveFilePath(xml);
        } else if (name == QLatin1String("category")) {
            xml.readNext();
            parseProductCategory(xml);
        } else if (name == QLatin1String("update")) {
            xml.readNext();
            parseProductUpdate(xml);
        } else {
            xml.readNext();
        }
    }
}

bool CProductList::TakeField(QXmlStreamReader& xml, QString& text)
{
    return CXmlSection::TakeText(xml, text) && m_pCurrent;
}

void CProductList::parseProductName(QXmlStreamReader& xml, bool bBase)
{
    m_pCurrent = nullptr;
    QString text;
    if (!CXmlSection::TakeText(xml, text))
        return;
    // The settings never create products; an unknown name skips its fields.
    m_pCurrent = bBase ? Add(text) : GetByName(text);
}

void CProductList::parseProductDataset(QXmlStreamReader& xml)
{
    QString text;
    if (TakeField(xml, text))
        m_pCurrent->SetDataset(text);
}

void CProductList::parseProductProductPath(QXmlStreamReader& xml)
{
    QString text;
    if (!TakeField(xml, text))
        return;
    if (m_pCurrent->GetName().contains(QLatin1String("Orbital Route Planner"))) {
        // This planner keeps its navigation data one level deeper than its folder; users have
        // always entered the folder itself.
        const int at = text.indexOf(QLatin1String("NavData"));
        if (at < 0 || at != text.length() - 7) {
            m_pCurrent->GetLog().WriteString(
                QStringLiteral("Orbital Route Planner: product_path without NavData, appending ORPX Data/NavData -> ") +
                    text,
                false);
            text += QStringLiteral("\\ORPX Data\\NavData");
        }
    }
    m_pCurrent->SetProductPath(std::move(text));
}

void CProductList::parseProductRegistryKey(QXmlStreamReader& xml)
{
    QString text;
    if (TakeField(xml, text))
        m_pCurrent->SetRegistryKey(text);
}

void CProductList::parseProductInstallPath(QXmlStreamReader& xml)
{
    QString text;
    if (TakeField(xml, text))
        m_pCurrent->AddInstallPath(std::move(text));
}

void CProductList::parseProductCycleInfoPath(QXmlStreamReader& xml)
{
    QString text;
    if (TakeField(xml, text))
        m_pCurrent->SetCycleInfoPath(std::move(text));
}

void CProductList::parseProductRemoveFilePath(QXmlStreamReader& xml)
{
    QString text;
    if (TakeField(xml, text))
        m_pCurrent->AddRemoveFilePath(text);
}

void CProductList::parseProductCategory(QXmlStreamReader& xml)
{
    QString text;
    if (TakeField(xml, text))
        m_pCurrent->SetCategoryName(text);
}

void CProductList::parseProductUpdate(QXmlStreamReader& xml)
{
    QString text;
    // Case-sensitive: "TRUE" deselects. SetUpdate also tells the product's install group.
    if (TakeField(xml, text))
        m_pCurrent->SetUpdate(text == QLatin1String("true"));
}

void CProductList::Save(QXmlStreamWriter& xml) const
{
    xml.writeStartElement(QStringLiteral("products"));
    for (const CProduct* product : m_list) {
        xml.writeTextElement(QStringLiteral("name"), product->GetName());
        xml.writeTextElement(QStringLiteral("update"),
                             product->GetUpdate() ? QStringLiteral("true") : QStringLiteral("false"));
        xml.writeTextElement(QStringLiteral("dataset"), product->GetDataset());
        xml.writeTextElement(QStringLiteral("product_path"), product->GetProductPath());
        xml.writeTextElement(QStringLiteral("category"), product->GetCategoryName());
    }
    xml.writeEndElement();
}
