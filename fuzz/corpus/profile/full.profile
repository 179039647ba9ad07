<?xml version="1.0" encoding="UTF-8"?>
<profile id="fm-de:2" showInChannelList="0">
  <label>FM</label><label lang="de">UKW</label>
  <description lang="en">Band II</description>
  <begin>87.5 MHz</begin><end>108</end>
  <channels>
    <color>#3366cc</color>
    <channels start="87.6 MHz" width="200 kHz" count="102" first="-2" step="3" space="-50 kHz"/>
    <range label="Lower half" type="provider" selectable="1"><end>98 MHz</end><mirror mode="absolute">400 MHz</mirror></range>
    <Range type="CHANNEL"><begin>90</begin><end>91 MHz</end><comment>c</comment><mirror>1</mirror><mirror>-2 MHz</mirror>
      <range><begin>90.2</begin><end>90.4</end><channels count="3"/></range></Range>
    <unknown a="b">x<![CDATA[<y>]]></unknown>
  </channels>
</profile>
