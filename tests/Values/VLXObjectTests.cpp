#include <gtest/gtest.h>

#include <VelmarCoreUI/Platform/Foundation/VLXObject.h>
#include <VelmarCoreUI/Platform/Foundation/VLXValue.h>

namespace {
const char kFirstKey = 0;
const char kSecondKey = 0;
}  // namespace

TEST(VLXObject, IdentityAndDescription) {
    const auto a = VLXObject::create();
    const auto b = VLXObject::create();
    EXPECT_TRUE(a->isEqual(*a));
    EXPECT_FALSE(a->isEqual(*b));
    EXPECT_EQ(a->className(), "VLXObject");
    EXPECT_EQ(a->description().rfind("<VLXObject: 0x", 0), 0u);
    EXPECT_NE(a->description(), b->description());
    EXPECT_TRUE(a->encodedValue().isNil());
}

TEST(VLXObject, AssociatedObjectsHonourTheirPolicy) {
    const auto owner = VLXObject::create();
    EXPECT_TRUE(owner->associatedObject(&kFirstKey).isNil());

    std::weak_ptr<VLXObject> retainedWatch;
    {
        auto retained = VLXObject::create();
        retainedWatch = retained;
        owner->setAssociatedObject(&kFirstKey, retained, VLXAssociationPolicy::Retain);
    }
    EXPECT_FALSE(retainedWatch.expired());
    EXPECT_EQ(owner->associatedObject(&kFirstKey).objectValue(), retainedWatch.lock());

    auto assigned = VLXObject::create();
    owner->setAssociatedObject(&kSecondKey, assigned, VLXAssociationPolicy::Assign);
    EXPECT_EQ(owner->associatedObject(&kSecondKey).objectValue(), assigned);
    assigned.reset();
    EXPECT_TRUE(owner->associatedObject(&kSecondKey).isNil());  // not kept alive

    // Non-object values are kept whatever the policy; replacing releases the old value.
    owner->setAssociatedObject(&kSecondKey, "label", VLXAssociationPolicy::Assign);
    EXPECT_EQ(owner->associatedObject(&kSecondKey), VLXValue("label"));
    owner->setAssociatedObject(&kFirstKey, 7);
    EXPECT_TRUE(retainedWatch.expired());
    EXPECT_EQ(owner->associatedObject(&kFirstKey), VLXValue(7));

    owner->setAssociatedObject(&kFirstKey, VLXValue());  // nil removes
    EXPECT_TRUE(owner->associatedObject(&kFirstKey).isNil());
    owner->removeAssociatedObjects();
    EXPECT_TRUE(owner->associatedObject(&kSecondKey).isNil());

    // An object associated with itself is released with removeAssociatedObjects.
    std::weak_ptr<VLXObject> selfWatch;
    {
        auto loop = VLXObject::create();
        selfWatch = loop;
        loop->setAssociatedObject(&kFirstKey, loop);
        loop->removeAssociatedObjects();
    }
    EXPECT_TRUE(selfWatch.expired());
}
