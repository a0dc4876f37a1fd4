// placeholder until the shared helpers land
namespace brenlow::testing_support {}
