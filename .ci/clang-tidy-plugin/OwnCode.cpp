// Keeps clang-tidy from looking at the headers of others: what a check says of them is not shown anyway, and
// walking through them is most of what it costs.

#include <clang-tidy/ClangTidyCheck.h>
#include <clang-tidy/ClangTidyModule.h>
#include <clang-tidy/ClangTidyModuleRegistry.h>
#include <clang/AST/ASTContext.h>
#include <clang/ASTMatchers/ASTMatchFinder.h>
#include <clang/Basic/SourceManager.h>

#include <vector>

namespace {

/// Is matched before all else and narrows what is matched afterwards. Finds nothing itself.
class OwnCodeCheck : public clang::tidy::ClangTidyCheck {
 public:
  using ClangTidyCheck::ClangTidyCheck;

  void registerMatchers(clang::ast_matchers::MatchFinder* finder) override {
    finder->addMatcher(clang::ast_matchers::translationUnitDecl().bind("unit"), this);
  }

  void check(clang::ast_matchers::MatchFinder::MatchResult const& result) override {
    std::vector<clang::Decl*> own;
    for (auto* const declaration : result.Context->getTranslationUnitDecl()->decls())
      if (!result.SourceManager->isInSystemHeader(declaration->getLocation())) own.push_back(declaration);
    result.Context->setTraversalScope(own);
  }
};

class OwnCodeModule : public clang::tidy::ClangTidyModule {
 public:
  void addCheckFactories(clang::tidy::ClangTidyCheckFactories& factories) override {
    factories.registerCheck<OwnCodeCheck>("own-code");
  }
};

clang::tidy::ClangTidyModuleRegistry::Add<OwnCodeModule> const registration("own-code-module",
                                                                            "Own code only.");

}  // namespace
