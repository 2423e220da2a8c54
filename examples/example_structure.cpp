#include "example_structure.h"

#include <cwchar>

using namespace xch;

namespace example {

namespace {

std::shared_ptr<ExcBlockReference> place(std::uint64_t blockId, const std::wstring& name, double x, double y,
                                         double z) {
    auto reference = std::make_shared<ExcBlockReference>(blockId, name);
    ExcTransformation placement;
    placement.translation().set(x, y, z);
    reference->setTransformation(placement);
    reference->setGuid(ExcProductStructure::generateUUID());
    return reference;
}

std::shared_ptr<ExcMiscPropertiesGroup> group(const std::wstring& name, bool bim,
                                              std::initializer_list<ExcMiscProperty> properties) {
    auto result = std::make_shared<ExcMiscPropertiesGroup>(name, bim);
    for (const ExcMiscProperty& property : properties) result->addProperty(property);
    return result;
}

std::wstring number(double x) {
    wchar_t text[32];
    std::swprintf(text, 32, L"%g", x);
    return text;
}

} // namespace

std::shared_ptr<ExcProductStructure> makeProductStructure() {
    auto structure = std::make_shared<ExcProductStructure>();
    structure->setProductName(L"Bracket assembly");
    structure->setUnits(LengthMillimeter);
    structure->setWorldOrientation(OrientationUpZ);
    structure->miscData().addGroup(group(L"Project", false, {{L"Author", ExcMiscProperty::TypeString, L"M. Keller"}}));

    auto plate = std::make_shared<ExcBlock>(1, L"Bracket", true);
    plate->setStorageName(L"bracket.stp");
    plate->miscData().addGroup(group(L"Pset_ManufacturerTypeInformation", true,
                                     {{L"Manufacturer", ExcMiscProperty::TypeString, L"Quillaro"},
                                      {L"ModelReference", ExcMiscProperty::TypeString, L"BR-200"}}));
    plate->miscData().addGroup(group(L"Physical", false,
                                     {{L"Mass", ExcMiscProperty::TypeDouble, L"0.412", L"kg", ExcMiscProperty::Mass}}));
    auto bolt = std::make_shared<ExcBlock>(2, L"Bolt M6\u00d720", true);
    auto nut = std::make_shared<ExcBlock>(3, L"Nut M6", true);
    auto kit = std::make_shared<ExcBlock>(11, L"Bolt kit");
    kit->addBlockReference(place(2, L"Bolt", 0, 0, 0));
    kit->addBlockReference(place(3, L"Nut", 0, 0, 14));
    auto top = std::make_shared<ExcBlock>(10, L"Bracket assembly");
    auto plateRef = place(1, L"Bracket:1", 0, 0, 0);
    plateRef->setColor(ExcColor(180, 180, 190));
    top->addBlockReference(plateRef);
    top->addBlockReference(place(11, L"Bolt kit:1", 20, 15, 6));
    auto second = place(11, L"Bolt kit:2", 80, 15, 6);
    second->setColor(ExcColor(200, 40, 40, 255));
    top->addBlockReference(second);
    for (const auto& block : {plate, bolt, nut, kit, top}) structure->addBlock(block);
    structure->addRootBlockReference(place(10, L"Bracket assembly:1", 0, 0, 0));
    return structure;
}

void printProductStructure(const ExcProductStructure& structure, const std::function<void(const std::wstring&)>& say,
                           std::size_t maxLines) {
    say(L"product " + structure.productName() + L" (" + enumToString(structure.units()) + L", " +
        std::to_wstring(structure.blocks().size()) + L" blocks)");
    std::size_t lines = 0;
    structure.visit([&](const ExcBlockReference& reference, const ExcBlock* block, std::size_t depth) {
        std::wstring line(2 * depth + 2, L' ');
        line += reference.name() + L" -> block " + std::to_wstring(reference.blockId());
        if (!block) {
            line += L" (missing)";
        } else {
            line += L" " + block->name() + (block->isPart() ? L" [part]" : L"");
            for (const auto& group : block->miscData().groups())
                line += L" {" + group->name() + (group->isBim() ? L", BIM" : L"") + L"}";
        }
        const ExcVector3d& at = reference.transformation().translation();
        if (at.x() != 0 || at.y() != 0 || at.z() != 0)
            line += L" at (" + number(at.x()) + L", " + number(at.y()) + L", " + number(at.z()) + L")";
        say(line);
        if (++lines < maxLines) return true;
        say(L"  ...");
        return false;
    });
}

} // namespace example
