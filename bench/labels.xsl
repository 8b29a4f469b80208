<?xml version="1.0" encoding="UTF-8"?>
<!-- Copies labels and categories by name, without regard to case, from the codebook $source. -->
<xsl:stylesheet version="1.0" xmlns:xsl="http://www.w3.org/1999/XSL/Transform"
                xmlns:d="ddi:codebook:2_5">
  <xsl:param name="source"/>
  <xsl:variable name="lower" select="'abcdefghijklmnopqrstuvwxyz'"/>
  <xsl:variable name="upper" select="'ABCDEFGHIJKLMNOPQRSTUVWXYZ'"/>
  <xsl:variable name="sourceDocument" select="document($source)"/>
  <xsl:key name="byName" match="d:var"
           use="translate(@name, 'abcdefghijklmnopqrstuvwxyz', 'ABCDEFGHIJKLMNOPQRSTUVWXYZ')"/>

  <xsl:template match="@*|node()">
    <xsl:copy><xsl:apply-templates select="@*|node()"/></xsl:copy>
  </xsl:template>

  <xsl:template match="d:var">
    <xsl:variable name="name" select="translate(@name, $lower, $upper)"/>
    <xsl:copy>
      <xsl:copy-of select="@*"/>
      <xsl:copy-of select="d:location"/>
      <xsl:for-each select="$sourceDocument">
        <xsl:copy-of select="key('byName', $name)/d:labl"/>
        <xsl:copy-of select="key('byName', $name)/d:catgry"/>
      </xsl:for-each>
      <xsl:copy-of select="d:varFormat"/>
    </xsl:copy>
  </xsl:template>
</xsl:stylesheet>
