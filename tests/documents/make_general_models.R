#!/usr/bin/env Rscript
# Fits the general regression models of the folder general_regression and writes, for each, a document and the
# fitting program's own answers.
#
#     Rscript make_general_models.R          (Debian: r-base-core r-cran-mass r-cran-nnet r-cran-survival)
#
# clinic.csv          the rows, simulated once, of all models
# NAME.pmml, NAME.xml the model, in PMML or as zent-ml
# NAME.expected.csv   that program's answers: predicted values, standard errors, probabilities
#
# The files are checked in, so that the tests need no R.  Numbers are written with all their digits.

suppressPackageStartupMessages({library(MASS); library(nnet); library(survival)})

this_file <- sub("^--file=", "", grep("^--file=", commandArgs(FALSE), value = TRUE))
folder <- file.path(dirname(normalizePath(this_file)), "general_regression")

# ------------------------------------------------------------------------------------------------ the rows

simulate <- function(n) {
  set.seed(1815)
  d <- data.frame(
    age = round(runif(n, 20, 80), 1), weight = round(rnorm(n, 75, 12), 1),
    smoker = sample(c("no", "yes"), n, TRUE), ward = sample(c("east", "north", "south"), n, TRUE),
    grade = sample(1:4, n, TRUE), exposure = round(rexp(n, 0.5) + 0.1, 2), trials = sample(5:20, n, TRUE),
    site = sample(c("A", "B"), n, TRUE))
  risk <- 0.03 * (d$age - 50) + 0.8 * (d$smoker == "yes") - 0.5 * (d$ward == "north") + 0.2 * d$grade
  d$ill <- ifelse(runif(n) < plogis(risk - 0.5), "ill", "well")
  d$visits <- rpois(n, d$exposure * exp(0.3 * risk))
  d$days <- rnbinom(n, mu = exp(1 + 0.3 * risk), size = 2)
  d$cost <- round(rgamma(n, 3, 3 / exp(3 + 0.2 * risk)), 2)
  d$events <- rbinom(n, d$trials, plogis(risk - 1))
  d$pain <- cut(risk + rlogis(n), c(-Inf, -0.5, 0.5, 1.5, Inf), c("none", "mild", "strong", "severe"))
  d$kind <- c("a", "b", "c")[1 + (risk + rlogis(n) > 0.3) + (0.05 * (d$weight - 75) + rlogis(n) > 0.5)]
  d$time <- round(rexp(n, 0.05 * exp(0.5 * risk)) + 0.5, 1)
  d$status <- as.integer(runif(n) < 0.8)
  d
}

# What the file holds is what the models are fitted to.
rows_file <- file.path(folder, "clinic.csv")
if (!file.exists(rows_file)) write.csv(simulate(120), rows_file, row.names = FALSE, quote = FALSE)
clinic <- read.csv(rows_file, stringsAsFactors = TRUE)
clinic$grade <- factor(clinic$grade)
clinic$pain <- factor(clinic$pain, c("none", "mild", "strong", "severe"), ordered = TRUE)
clinic$ill <- factor(clinic$ill, c("well", "ill"))

# ------------------------------------------------------------------------------------- from fit to document

digits <- function(x) formatC(x, digits = 17, format = "g", width = 1)
attributes_of <- function(...) {
  values <- list(...)
  values <- values[!sapply(values, is.null)]
  if (length(values) == 0) return("")
  paste0(" ", names(values), '="', unlist(values), '"', collapse = "")
}
element <- function(tag, ..., content = NULL) {
  if (is.null(content)) return(paste0("<", tag, attributes_of(...), "/>"))
  c(paste0("<", tag, attributes_of(...), ">"), paste0("  ", content), paste0("</", tag, ">"))
}

words <- list(
  pmml = list(params = "ParameterList", param = "Parameter", factors = "FactorList", covs = "CovariateList",
              pred = "Predictor", design = "PPMatrix", cell = "PPCell", cov = "PCovMatrix", cov_cell = "PCovCell",
              estimates = "ParamMatrix", estimate = "PCell", pred_name = "predictorName",
              param_name = "parameterName", category = "targetCategory", row = "pRow", col = "pCol"),
  zent = list(params = "parameter-list", param = "parameter", factors = "factor-list", covs = "covariate-list",
              pred = "predictor", design = "pp-matrix", cell = "pp-cell", cov = "pcov-matrix",
              cov_cell = "pcov-cell", estimates = "p-table", estimate = "p-cell", pred_name = "predictor-name",
              param_name = "parameter-name", category = "target-category", row = "p-row", col = "p-col"))

# The predictors of one part of a coefficient's name: a number, a power of one, a category, a contrast.
cell_of <- function(part) {
  power <- regmatches(part, regexec("^I\\((\\w+)\\^(\\d+)\\)$", part))[[1]]
  if (length(power) > 0) return(list(name = power[2], value = power[3]))
  if (part %in% names(clinic) && !is.factor(clinic[[part]])) return(list(name = part, value = "1"))
  for (name in names(clinic)[sapply(clinic, is.factor)]) {
    if (!startsWith(part, name)) next
    rest <- substring(part, nchar(name) + 1)
    if (rest %in% levels(clinic[[name]])) return(list(name = name, value = rest))
  }
  stop("coefficient of unknown make: ", part)
}
cells_of <- function(coefficient) {
  if (coefficient == "(Intercept)") return(list())
  lapply(strsplit(coefficient, ":", fixed = TRUE)[[1]], cell_of)
}

# Contrasts are named by the category of their column.
name_contrasts <- function(kind, field) {
  matrix <- kind(nlevels(clinic[[field]]))
  dimnames(matrix) <- list(levels(clinic[[field]]), levels(clinic[[field]])[seq_len(ncol(matrix))])
  matrix
}

contrast_elements <- function(matrix) {
  rows <- apply(matrix, 1, function(row) {
    paste0('<Array type="real" n="', length(row), '">', paste(digits(row), collapse = " "), "</Array>")
  })
  c(element("Categories", content = sapply(rownames(matrix), function(x) element("Category", value = x))),
    element("Matrix", nbRows = nrow(matrix), nbCols = ncol(matrix), content = unname(rows)))
}

# The lists of parameters and predictors, the design, the covariances and the estimates.  `coefficients` is a
# list of (name, category or NULL, value); `contrasts` are matrices by field.
structure_of <- function(coefficients, w, contrasts = list(), covariance = NULL, reference = NULL) {
  names <- unique(sapply(coefficients, `[[`, "name"))
  ids <- setNames(paste0("p", seq_along(names) - 1), names)
  cells <- lapply(names, cells_of)
  fields <- unique(unlist(lapply(unlist(cells, recursive = FALSE), `[[`, "name")))
  is_factor <- sapply(fields, function(f) is.factor(clinic[[f]]))
  params <- sapply(names, function(n) {
    element(w$param, name = ids[[n]], label = n, referencePoint = if (!is.null(reference)) digits(reference[[n]]))
  })
  predictor <- function(f) {
    if (is.null(contrasts[[f]])) return(element(w$pred, name = f))
    element(w$pred, name = f, content = contrast_elements(contrasts[[f]]))
  }
  design <- unlist(lapply(seq_along(names), function(i) sapply(cells[[i]], function(cell) {
    do.call(element, c(list(w$cell, value = cell$value),
                       setNames(list(cell$name, ids[[i]]), c(w$pred_name, w$param_name))))
  })))
  estimates <- sapply(coefficients, function(one) {
    do.call(element, c(list(w$estimate, beta = digits(one$value), df = "1"),
                       setNames(list(ids[[one$name]], one$category), c(w$param_name, w$category)[
                         c(TRUE, !is.null(one$category))])))
  })
  covariances <- NULL
  if (!is.null(covariance)) {
    pairs <- which(lower.tri(covariance, diag = TRUE), arr.ind = TRUE)
    covariances <- element(w$cov, content = apply(pairs, 1, function(p) {
      do.call(element, c(list(w$cov_cell, value = digits(covariance[p[1], p[2]])),
                         setNames(list(ids[[p[1]]], ids[[p[2]]]), c(w$row, w$col))))
    }))
  }
  list(fields = fields,
       xml = c(element(w$params, content = unname(params)),
               element(w$factors, content = unlist(lapply(fields[is_factor], predictor))),
               element(w$covs, content = unlist(lapply(fields[!is_factor], predictor))),
               element(w$design, content = unname(design)), covariances,
               element(w$estimates, content = unname(estimates))))
}

data_field <- function(name) {
  values <- levels(clinic[[name]])
  is_text <- is.factor(clinic[[name]]) && name != "grade"
  optype <- if (is.null(values)) "continuous" else if (is.ordered(clinic[[name]])) "ordinal" else "categorical"
  element("DataField", name = name, optype = optype, dataType = if (is_text) "string" else "double",
          content = if (!is.null(values)) unname(sapply(values, function(v) element("Value", value = v))))
}

# `outputs` are output fields by feature.
write_pmml <- function(name, target, type, structure, ..., more_fields = NULL, more = NULL, outputs = NULL) {
  fields <- unique(c(structure$fields, more_fields))
  schema <- c(sapply(fields, function(f) element("MiningField", name = f)),
              element("MiningField", name = target, usageType = "target"))
  output <- if (!is.null(outputs)) element("Output", content = sapply(names(outputs), function(f)
    element("OutputField", name = outputs[[f]], feature = f, dataType = "double", optype = "continuous")))
  is_number <- is.null(levels(clinic[[target]]))
  model <- element("GeneralRegressionModel", modelName = name, modelType = type,
                   functionName = if (is_number) "regression" else "classification", ...,
                   content = unname(c(element("MiningSchema", content = unname(schema)), output, structure$xml, more)))
  all_fields <- unique(c(fields, target))
  document <- element("PMML", version = "4.4", xmlns = "http://www.dmg.org/PMML-4_4", content = c(
    element("Header", copyright = "fitted to simulated rows"),
    element("DataDictionary", numberOfFields = length(all_fields),
            content = unlist(lapply(all_fields, data_field))), model))
  writeLines(c('<?xml version="1.0" encoding="UTF-8"?>', document), file.path(folder, paste0(name, ".pmml")))
}

zent_variable <- function(name) {
  values <- levels(clinic[[name]])
  level <- if (is.null(values)) "CONTINUOUS" else if (is.ordered(clinic[[name]])) "ORDINAL" else "NOMINAL"
  element("variable", name = name, `measurement-level` = level,
          `storage-type` = if (is.null(values) || name == "grade") "NUMERIC" else "STRING",
          content = if (!is.null(values))
            element("categories", content = unname(sapply(values, function(v) element("category", value = v)))))
}

write_zent <- function(name, target, type, structure) {
  document <- element("zent-ml", version = "1.0", content = c(
    element("dictionary", content = unlist(lapply(c(structure$fields, target), zent_variable))),
    element("regression-model", `model-type` = type, `target-variable-name` = target, content = structure$xml)))
  writeLines(c('<?xml version="1.0" encoding="UTF-8"?>', document), file.path(folder, paste0(name, ".xml")))
}

write_expected <- function(name, columns) {
  columns <- lapply(columns, function(column) if (is.numeric(column)) digits(column) else as.character(column))
  write.csv(as.data.frame(columns, check.names = FALSE), file.path(folder, paste0(name, ".expected.csv")),
            row.names = FALSE, quote = FALSE)
}

estimates_of <- function(fit) {
  values <- coef(fit)
  lapply(names(values), function(n) list(name = n, value = values[[n]]))
}
probabilities <- function(p) setNames(as.list(as.data.frame(p)), paste0("probability(", colnames(p), ")"))
best <- function(p) colnames(p)[max.col(p, "first")]

# ------------------------------------------------------------------------------------------------ the models

# A number and its standard error.
numeric_model <- function(name, target, type, fit, contrasts = list(), scale = 1, more_fields = NULL, ...) {
  structure <- structure_of(estimates_of(fit), words$pmml, contrasts, vcov(fit))
  write_pmml(name, target, type, structure, ..., more_fields = more_fields,
             outputs = list(standardError = "error"))
  predicted <- predict(fit, clinic, type = "response", se.fit = TRUE)
  write_expected(name, setNames(list(predicted$fit * scale, predicted$se.fit * scale), c(target, "error")))
}

contrasts <- list(ward = name_contrasts(contr.helmert, "ward"), grade = name_contrasts(contr.poly, "grade"))
numeric_model("linear_contrasts", "weight", "generalLinear",
              lm(weight ~ age * ward + I(age^2) + grade + ward:grade + smoker, clinic, contrasts = contrasts),
              contrasts)
# The offset is a field of the document's own.
log_exposure <- element("LocalTransformations", content = element(
  "DerivedField", name = "log_exposure", optype = "continuous", dataType = "double",
  content = element("Apply", `function` = "ln", content = element("FieldRef", field = "exposure"))))
numeric_model("poisson_offset", "visits", "generalizedLinear",
              glm(visits ~ age + smoker + offset(log(exposure)), poisson, clinic),
              linkFunction = "log", distribution = "poisson", offsetVariable = "log_exposure",
              more_fields = "exposure", more = log_exposure)
numeric_model("gamma_inverse", "cost", "generalizedLinear", glm(cost ~ weight + ward, Gamma, clinic),
              linkFunction = "power", linkParameter = "-1", distribution = "gamma")
numeric_model("gamma_log", "cost", "generalizedLinear", glm(cost ~ age * ward, Gamma("log"), clinic),
              linkFunction = "log", distribution = "gamma")
numeric_model("inverse_gaussian", "cost", "generalizedLinear",
              glm(cost ~ smoker, inverse.gaussian, clinic),
              linkFunction = "power", linkParameter = "-2", distribution = "igauss")
numeric_model("cube_root", "cost", "generalizedLinear",
              glm(cost ~ age + grade, quasi(power(1 / 3), "mu^2"), clinic),
              linkFunction = "power", linkParameter = digits(1 / 3), distribution = "tweedie")
numeric_model("negative_binomial", "days", "generalizedLinear", glm.nb(days ~ age + ward * smoker, clinic),
              linkFunction = "log", distribution = "negbin")
for (link in c("logit", "probit", "cloglog", "cauchit")) {
  numeric_model(paste0("trials_", link), "events", "generalizedLinear",
                glm(cbind(events, trials - events) ~ age + smoker * ward, binomial(link), clinic),
                scale = clinic$trials, linkFunction = link, distribution = "binomial",
                trialsVariable = "trials", more_fields = "trials")
}

logistic <- glm(ill ~ age + smoker + ward + grade, binomial, clinic)
ill <- lapply(names(coef(logistic)), function(n) list(name = n, category = "ill", value = coef(logistic)[[n]]))
write_pmml("logistic", "ill", "generalizedLinear", structure_of(ill, words$pmml),
           linkFunction = "logit", distribution = "binomial")
p <- predict(logistic, clinic, type = "response")
p <- cbind(well = 1 - p, ill = p)
write_expected("logistic", c(list(ill = best(p)), probabilities(p)))

multinomial <- multinom(kind ~ age + weight * smoker, clinic, trace = FALSE, maxit = 1000)
estimates <- unlist(lapply(rownames(coef(multinomial)), function(category) {
  lapply(colnames(coef(multinomial)), function(n) {
    list(name = n, category = category, value = coef(multinomial)[category, n])
  })
}), recursive = FALSE)
write_pmml("multinomial", "kind", "multinomialLogistic", structure_of(estimates, words$pmml),
           targetReferenceCategory = "a")
write_zent("zent_multinomial", "kind", "multinomial-logistic", structure_of(estimates, words$zent))
p <- predict(multinomial, clinic, type = "probs")
for (name in c("multinomial", "zent_multinomial")) write_expected(name, c(list(kind = best(p)), probabilities(p)))

# polr subtracts what the standard adds.
for (link in c("logit", "probit", "cloglog", "loglog", "cauchit")) {
  fit <- polr(pain ~ age + smoker + ward, clinic, method = sub("logit", "logistic", link))
  thresholds <- lapply(seq_along(fit$zeta), function(i) {
    list(name = "(Intercept)", category = levels(clinic$pain)[i], value = fit$zeta[[i]])
  })
  slopes <- lapply(names(coef(fit)), function(n) list(name = n, value = -coef(fit)[[n]]))
  name <- paste0("ordinal_", link)
  write_pmml(name, "pain", "ordinalMultinomial", structure_of(c(thresholds, slopes), words$pmml),
             cumulativeLink = link)
  p <- predict(fit, clinic, type = "probs")
  write_expected(name, c(list(pain = best(p)), probabilities(p)))
}

# The expected number of events of a case that is watched from the start is its cumulative hazard.
cells <- function(hazard) {
  mapply(function(t, h) element("BaselineCell", time = digits(t), cumHazard = digits(h)), hazard$time, hazard$hazard)
}
cox_model <- function(name, fit, tables, ...) {
  structure <- structure_of(estimates_of(fit), words$pmml, reference = as.list(fit$means))
  write_pmml(name, "status", "CoxRegression", structure, ..., endTimeVariable = "time",
             statusVariable = "status", more = tables, more_fields = c("time", list(...)$baselineStrataVariable))
  write_expected(name, list(status = predict(fit, clinic, type = "expected")))
}
cox <- coxph(Surv(time, status) ~ age + smoker + weight, clinic)
hazard <- basehaz(cox)
cox_model("cox", cox, element("BaseCumHazardTables", maxTime = digits(max(hazard$time)), content = cells(hazard)))
cox <- coxph(Surv(time, status) ~ age + smoker + strata(site), clinic, ties = "breslow")
hazard <- basehaz(cox)
strata <- lapply(levels(clinic$site), function(site) {
  of_site <- hazard[hazard$strata == paste0("site=", site) | hazard$strata == site, ]
  element("BaselineStratum", value = site, maxTime = digits(max(of_site$time)), content = cells(of_site))
})
cox_model("cox_strata", cox, element("BaseCumHazardTables", content = unlist(strata)),
          baselineStrataVariable = "site")

linear <- lm(weight ~ age * ward + smoker, clinic)
write_zent("zent_linear", "weight", "general-linear",
           structure_of(estimates_of(linear), words$zent, covariance = vcov(linear)))
write_expected("zent_linear", list(weight = predict(linear, clinic)))
loglinear <- glm(days ~ ward * smoker, poisson, clinic)
write_zent("zent_loglinear", "days", "log-linear", structure_of(estimates_of(loglinear), words$zent))
write_expected("zent_loglinear", list(days = predict(loglinear, clinic, type = "response")))
